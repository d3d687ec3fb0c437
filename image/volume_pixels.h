#pragma once

// The pixels of a volume, box by box: read from its file, or taken from memory that holds the
// volume.

#include "image/allocate.h"
#include "image/image_header.h"
#include "image/stored_volume.h"
#include "image/volume_box.h"

#include <cstddef>
#include <optional>

namespace velmorant
{

// A box in memory. Its pixel (x, y, z), counted from its corner, is
//   first[z * slice_stride + y * row_stride + x]
// Where `first` is null, every pixel is 0.
struct BoxPixels {
    const float *first;
    std::size_t row_stride;
    std::size_t slice_stride;
};

class VolumePixels
{
public:
    // The most pixels of a box. Two rows of the widest picture fit.
    static constexpr std::size_t BoxRoom = 131072;

    // A volume in memory, laid out as image/image_header.h says. It stays the caller's.
    VolumePixels(const float *volume, const ImageHeader &header);

    // A volume in a file. buffer: from `allocate_box_buffer`.
    VolumePixels(StoredVolume volume, Block<float> buffer);

    [[nodiscard]] const ImageHeader &header() const
    {
        return shape;
    }

    // The pixels of a box of at most BoxRoom pixels, valid until the next call. Reads them unless
    // the last call did, and ends the run as `read_box` does.
    BoxPixels box(const VolumeBox &box);

private:
    ImageHeader shape;
    std::optional<StoredVolume> stored;
    Block<float> buffer;
    const float *pixels;
    VolumeBox held; // the box in `pixels`
};

// Room for the largest box of a volume that a `VolumePixels` reads at a time, labelled "ImgTarget".
Block<float> allocate_box_buffer(const ImageHeader &header);

} // namespace velmorant
