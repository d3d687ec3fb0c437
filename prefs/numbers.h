#pragma once

// Numbers with defined edges: every conversion of a text or of a real value to an integer goes
// through one of these, whatever the input holds.

#include <cfloat>
#include <cstdint>
#include <limits>
#include <string>

namespace velmorant
{

static_assert(FLT_EVAL_METHOD == 0, "single precision must be computed in single precision");
static_assert(std::numeric_limits<float>::is_iec559 && sizeof(float) == 4);

// The integer that a text begins with, as atoi reads it: leading white space is skipped, then an
// optional sign and decimal digits are taken, and the rest is ignored. No digits give 0. A number
// outside of 32 bits is held within 64 bits and keeps its low 32 bits, as atoi does where long has
// 64 bits.
std::int32_t text_to_int32(const char *text);

// The number that a text begins with, as atof reads it (in double precision, "inf" and "nan"
// included), narrowed to single precision; beyond its range that is an infinity. No number gives 0.
float text_to_float(const char *text);

// The number with six decimals, as %f prints it and the files of this package state it.
std::string decimal_text(float value);

// Truncates toward zero; beyond the range gives the nearer end, NaN gives 0.
constexpr std::int32_t truncate_to_int32(double value)
{
    // Both ends are exact in double precision, which INT32_MAX is not in single precision.
    constexpr double lowest = std::numeric_limits<std::int32_t>::min();
    constexpr double highest = std::numeric_limits<std::int32_t>::max();
    if (value != value) {
        return 0;
    }
    if (value <= lowest) {
        return std::numeric_limits<std::int32_t>::min();
    }
    if (value >= highest) {
        return std::numeric_limits<std::int32_t>::max();
    }
    return static_cast<std::int32_t>(value);
}

// Whether a value, truncated, is beyond what a 32-bit integer can hold. NaN, which is truncated to
// 0, is not.
constexpr bool exceeds_int32(double value)
{
    return value >= 2147483648.0 || value <= -2147483649.0;
}

// The low 16 bits of an integer, as a signed number: what a 16-bit field of a file keeps of it.
constexpr std::int16_t wrap_to_int16(std::int32_t value)
{
    return static_cast<std::int16_t>(value);
}

// The sum modulo 2^32, as a signed number.
constexpr std::int32_t wrap_add(std::int32_t a, std::int32_t b)
{
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) + static_cast<std::uint32_t>(b));
}

} // namespace velmorant
