#pragma once

// The order in which the planes of an ECAT 6 image lie in a buffer: frame by frame, in each frame
// bed by bed, in each bed plane by plane. A raw file and its buffer run frame by frame within a bed;
// see `volume_index` (image/format_dispatch.h).

#include "image/image_header.h"

#include <cstdint>

namespace velmorant
{

// The last coordinates of a run of planes.
struct LastPlane {
    std::int32_t frame;
    std::int32_t plane;
    std::int32_t bed;
};

// Calls `visit` with the matrix of each plane, in the order of a buffer: the frames from the first
// matrix's on, in each the beds from its bed on, in each the planes from its plane on. Gate and data
// set are the first matrix's.
template <class Visit>
void visit_planes(const ImageMatrix &first, const LastPlane &last, Visit visit)
{
    ImageMatrix matrix = first;
    // 64-bit, because the last of each may be the highest number of 32 bits.
    for (std::int64_t frame = first.frame; frame <= last.frame; ++frame) {
        for (std::int64_t bed = first.bed; bed <= last.bed; ++bed) {
            for (std::int64_t plane = first.plane; plane <= last.plane; ++plane) {
                matrix.frame = static_cast<std::int32_t>(frame);
                matrix.bed = static_cast<std::int32_t>(bed);
                matrix.plane = static_cast<std::int32_t>(plane);
                visit(matrix);
            }
        }
    }
}

} // namespace velmorant
