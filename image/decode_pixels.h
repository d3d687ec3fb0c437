#pragma once

#include "image/stored_type.h"

#include <bit>
#include <cstddef>
#include <cstdint>

namespace velmorant
{

// Fills `count` pixels from as many elements at `bytes`, which needn't be aligned: an integer n
// stands for n * factor, computed in single precision, a float for itself.
void decode_pixels(StoredType type, std::endian byte_order, const std::uint8_t *bytes,
                   float *pixels, std::size_t count, float factor);

} // namespace velmorant
