#include "image/volume_pixels.h"

#include "image/image_geometry.h"

#include <algorithm>
#include <utility>

namespace velmorant
{

VolumePixels::VolumePixels(const float *volume, const ImageHeader &header)
    : shape(header), pixels(volume), held(whole_volume(header))
{
    checked_image_size(header);
}

VolumePixels::VolumePixels(StoredVolume volume, Block<float> box_buffer)
    : shape(volume.header), stored(std::move(volume)), buffer(std::move(box_buffer)),
      pixels(buffer.get()), held{}
{
    checked_image_size(shape);
}

BoxPixels VolumePixels::box(const VolumeBox &box)
{
    if (!contains(held, box)) {
        if (is_blank(*stored, box)) {
            return {};
        }
        const VolumeBox whole = whole_volume(shape);
        held = box_size(whole) <= BoxRoom ? whole : box;
        read_box(*stored, held, buffer.get());
    }
    const auto row = static_cast<std::size_t>(held.width);
    const std::size_t slice = row * static_cast<std::size_t>(held.height);
    return {.first = pixels + static_cast<std::size_t>(box.z - held.z) * slice +
                     static_cast<std::size_t>(box.y - held.y) * row +
                     static_cast<std::size_t>(box.x - held.x),
            .row_stride = row,
            .slice_stride = slice};
}

Block<float> allocate_box_buffer(const ImageHeader &header)
{
    const std::size_t room = std::min(checked_image_size(header), VolumePixels::BoxRoom);
    return Block<float>(allocate_float(static_cast<std::int32_t>(room), "ImgTarget"));
}

} // namespace velmorant
