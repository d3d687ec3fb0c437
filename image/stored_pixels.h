#pragma once

// The elements of data files, and the pixels that they stand for.

#include <bit>
#include <cstddef>
#include <cstdint>

namespace velmorant
{

// Element types, by their number in a header's data_format: 16-bit integers in two's complement,
// and IEEE 754 single-precision floats.
enum class StoredType : std::int32_t { SignedShort = 1, UnsignedShort = 2, Float = 3 };

constexpr std::size_t stored_bytes(StoredType type)
{
    return type == StoredType::Float ? 4 : 2;
}

// Fills `count` pixels from as many elements at `bytes`, which need no alignment: an integer n
// stands for n * factor, computed in single precision, a float for itself.
void decode_pixels(StoredType type, std::endian byte_order, const std::uint8_t *bytes,
                   float *pixels, std::size_t count, float factor);

} // namespace velmorant
