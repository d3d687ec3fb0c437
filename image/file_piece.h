#pragma once

#include "image/allocate.h"

#include <cstdint>

namespace velmorant
{

// Bytes of a data file that are converted and read or written at a time: few enough to stay in the
// cache between the two.
inline constexpr std::int32_t PieceBytes = 262144;

// A zeroed block of PieceBytes bytes.
inline Block<unsigned char> allocate_file_piece()
{
    return Block<unsigned char>(allocate_unsigned_char_zero(PieceBytes, "file piece"));
}

} // namespace velmorant
