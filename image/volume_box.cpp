#include "image/volume_box.h"

#include <algorithm>

namespace velmorant
{

std::size_t box_size(const VolumeBox &box)
{
    return static_cast<std::size_t>(box.width) * static_cast<std::size_t>(box.height) *
           static_cast<std::size_t>(box.depth);
}

// Whether `count` numbers from `first` on are among `outer_count` from `outer_first` on.
static bool covers(std::int64_t outer_first, std::int64_t outer_count, std::int64_t first,
                   std::int64_t count)
{
    return outer_first <= first && first + count <= outer_first + outer_count;
}

bool contains(const VolumeBox &outer, const VolumeBox &inner)
{
    return covers(outer.x, outer.width, inner.x, inner.width) &&
           covers(outer.y, outer.height, inner.y, inner.height) &&
           covers(outer.z, outer.depth, inner.z, inner.depth);
}

VolumeBox whole_volume(const ImageHeader &header)
{
    return {.x = 0,
            .y = 0,
            .z = 0,
            .width = header.x_dim,
            .height = header.y_dim,
            .depth = header.num_slices};
}

namespace
{

// A volume's pieces along one axis, each of `length` pixels but for a shorter last one.
struct Division {
    std::int32_t extent;
    std::int32_t length;

    [[nodiscard]] std::int64_t count() const
    {
        return (std::int64_t{extent} + length - 1) / length;
    }
    [[nodiscard]] std::int32_t first(std::int64_t piece) const
    {
        return static_cast<std::int32_t>(piece * length);
    }
    [[nodiscard]] std::int32_t size(std::int64_t piece) const
    {
        return std::min(length, extent - first(piece));
    }
};

struct Pieces {
    Division x;
    Division y;
    Division z;
};

} // namespace

// Divides an axis along which `pixels` pixels follow for each of `extent` steps.
static Division divide(std::int32_t extent, std::int64_t pixels, std::int32_t most)
{
    const std::int64_t length = pixels == 0 ? most : most / pixels;
    return {.extent = extent,
            .length = static_cast<std::int32_t>(std::max<std::int64_t>(length, 1))};
}

static Pieces divide_volume(const ImageHeader &header, std::int32_t most)
{
    return {.x = divide(header.x_dim, 1, most),
            .y = divide(header.y_dim, header.x_dim, most),
            .z = divide(header.num_slices, std::int64_t{header.x_dim} * header.y_dim, most)};
}

std::int64_t count_pieces(const ImageHeader &header, std::int32_t most)
{
    const Pieces pieces = divide_volume(header, most);
    return pieces.x.count() * pieces.y.count() * pieces.z.count();
}

VolumeBox volume_piece(const ImageHeader &header, std::int64_t number, std::int32_t most)
{
    const Pieces pieces = divide_volume(header, most);
    const std::int64_t x = number % pieces.x.count();
    const std::int64_t y = number / pieces.x.count() % pieces.y.count();
    const std::int64_t z = number / pieces.x.count() / pieces.y.count();
    return {.x = pieces.x.first(x),
            .y = pieces.y.first(y),
            .z = pieces.z.first(z),
            .width = pieces.x.size(x),
            .height = pieces.y.size(y),
            .depth = pieces.z.size(z)};
}

} // namespace velmorant
