#pragma once

#include "image/allocate.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace velmorant
{

// Bytes of a data file that are converted and read or written at a time: few enough to stay in the
// cache between the two.
inline constexpr std::int32_t PieceBytes = 131072;

// A zeroed block of PieceBytes bytes, or of fewer where the whole data are fewer.
inline Block<unsigned char> allocate_file_piece(std::size_t data_bytes)
{
    const std::size_t bytes = std::min<std::size_t>(data_bytes, PieceBytes);
    return Block<unsigned char>(
        allocate_unsigned_char_zero(static_cast<std::int32_t>(bytes), "file piece"));
}

} // namespace velmorant
