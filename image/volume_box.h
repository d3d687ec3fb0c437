#pragma once

// Boxes of a volume: parts of it that are read and worked on at a time.

#include "image/image_header.h"

#include <cstddef>
#include <cstdint>

namespace velmorant
{

// The pixels (x, y, z) to (x + width - 1, y + height - 1, z + depth - 1) of a volume in the
// standard orientation. In memory a box is laid out as a volume of its size is: x fastest, then y,
// then z.
struct VolumeBox {
    std::int32_t x;
    std::int32_t y;
    std::int32_t z;
    std::int32_t width;
    std::int32_t height;
    std::int32_t depth;
};

std::size_t box_size(const VolumeBox &box);
bool contains(const VolumeBox &outer, const VolumeBox &inner);

// The box of all pixels. The header's dimensions have to pass `check_image_geometry`.
VolumeBox whole_volume(const ImageHeader &header);

// Divides a volume into boxes of at most `most` pixels: of whole slices, of whole rows of a slice
// where a slice has more pixels, or of parts of a row. Piece n + 1 follows piece n in the order of
// the pixels. PiecePixels stay in the processor's cache from one step of the work to the next.
inline constexpr std::int32_t PiecePixels = 32768;

// number: from 0 to count_pieces - 1.
std::int64_t count_pieces(const ImageHeader &header, std::int32_t most = PiecePixels);
VolumeBox volume_piece(const ImageHeader &header, std::int64_t number,
                       std::int32_t most = PiecePixels);

} // namespace velmorant
