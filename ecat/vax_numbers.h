#pragma once

// The numbers of a VAX computer, taken from and put into 16-bit words. The words have the host's
// byte order; whoever reads them from a file does so little-endian.
//
// VAX F floating-point number: 32 bits in two words.
//
//   WORD    BITS     HOLD
//   first   15       sign
//           14-7     exponent, excess 128
//           6-0      the fraction's seven high bits
//   second  15-0     the fraction's sixteen low bits
//
// The value is 0.1f (base 2, the leading 1 hidden) * 2^(exponent - 128). An IEEE 754 single with
// the same sign and fraction has an exponent field smaller by 2, and the first word in its high
// half. Both directions move the exponent by 2 modulo 256 and know no special values: the VAX
// exponents 0 and 1 (but for two words of 0) become IEEE 254 and 255, a huge number, infinity or
// NaN, and IEEE 254 and 255 become VAX 0 and 1.

#include <cstddef>
#include <cstdint>

namespace velmorant
{

// The VAX F number in the words `index` and `index` + 1; 0 where both are 0.
float get_vax_float(const std::uint16_t *words, std::size_t index);

// The 32-bit integer in the words `index`, its low half, and `index` + 1.
std::int32_t get_vax_long(const std::uint16_t *words, std::size_t index);

// Writes the two words of a VAX F number. Magnitudes of up to 1e-20 become 0; NaN does not.
void sunftovaxf(std::uint16_t *destination, float value);

// Writes the two words of a 32-bit integer, the low half first.
void sunltovaxl(std::int32_t value, std::uint16_t *destination);

// Copy bytes, or 16-bit words, with the two of each pair exchanged. A count of 0 or less does
// nothing; an odd one also takes the element just past it. Source and destination may be the same.
void swabt(const std::uint8_t *source, std::uint8_t *destination, std::int32_t byte_count);
void swaw(const std::uint16_t *source, std::uint16_t *destination, std::int32_t word_count);

} // namespace velmorant
