#include "app/montage.h"

#include "image/wide_vectors.h"
#include "prefs/error_report.h"

#include <algorithm>
#include <string>

namespace velmorant
{

static void check_positive(std::int32_t value, const char *message)
{
    if (value < 1) {
        print_error_message(2, message, std::to_string(value).c_str());
    }
}

MontageGrid lay_out_montage(std::int32_t num_slices, std::int32_t columns, std::int32_t slice_width,
                            std::int32_t slice_height)
{
    check_positive(columns, "Illegal NumColumn: ");
    check_positive(slice_width, "Illegal slice_width: ");
    check_positive(slice_height, "Illegal slice_height: ");
    return {.columns = columns,
            .slice_width = slice_width,
            .slice_height = slice_height,
            .rows = num_slices / columns + (num_slices % columns == 0 ? 0 : 1)};
}

namespace
{

// Places a slice of `extent` pixels in a tile of `tile` pixels along one axis: the tile shows the
// source pixels from `source` on in its pixels from `first` to, without, `last`.
struct Placement {
    std::int32_t source;
    std::int32_t first;
    std::int32_t last;
};

} // namespace

static Placement centre(std::int32_t extent, std::int32_t tile)
{
    const std::int32_t edge = extent / 2 - tile / 2;
    const std::int32_t first = std::max(-edge, 0);
    return {.source = edge + first, .first = first, .last = std::min(extent - edge, tile)};
}

// Turns `count` pixels into palette indices.
VELMORANT_WIDE_VECTORS
static void map_pixels(const float *pixels, std::size_t count, const PixelMapping &how,
                       std::uint8_t *indices)
{
    const PixelMapping mapping = how; // which no index that is written can change
    for (std::size_t i = 0; i < count; ++i) {
        indices[i] = palette_index(rescale(pixels[i], mapping.rescaling), mapping.range);
    }
}

static_assert(VolumePixels::BoxRoom >= 2 * std::size_t{32767}, "a row of the widest picture fits");

// The box that is read for one row of it: as many rows of the shown slices as there is room for.
static VolumeBox band_of(VolumeBox row, const Placement &down)
{
    const auto row_pixels = static_cast<std::int32_t>(box_size(row));
    const std::int32_t band = static_cast<std::int32_t>(VolumePixels::BoxRoom) / row_pixels;
    const std::int32_t end = down.source + (down.last - down.first);
    row.y -= (row.y - down.source) % band;
    row.height = std::min(band, end - row.y);
    return row;
}

// The pixels of a tile row that lie in one picture row, without the margins; no pixels where there
// are none. room: columns of the picture from the first slice's first pixel on.
static VolumeBox shown_row(const ImageHeader &header, const MontageGrid &grid, std::int32_t row,
                           const Placement &across, const Placement &down, std::int64_t room)
{
    const std::int32_t tile_y = row % grid.slice_height;
    if (tile_y < down.first || tile_y >= down.last || across.first >= across.last || room <= 0) {
        return {};
    }
    const std::int32_t first_slice = row / grid.slice_height * grid.columns;
    const std::int64_t columns =
        std::min<std::int64_t>(grid.columns, (room + grid.slice_width - 1) / grid.slice_width);
    return {.x = across.source,
            .y = down.source + tile_y - down.first,
            .z = first_slice,
            .width =
                static_cast<std::int32_t>(std::min<std::int64_t>(across.last - across.first, room)),
            .height = 1,
            .depth = static_cast<std::int32_t>(
                std::min<std::int64_t>(header.num_slices - first_slice, columns))};
}

void render_montage_row(VolumePixels &volume, const MontageGrid &grid, const PixelMapping &mapping,
                        std::int32_t row, std::span<std::uint8_t> indices)
{
    std::ranges::fill(indices, palette_index(0.0F, mapping.range));
    const ImageHeader &header = volume.header();
    const Placement across = centre(header.x_dim, grid.slice_width);
    const Placement down = centre(header.y_dim, grid.slice_height);
    const std::int64_t room = static_cast<std::int64_t>(indices.size()) - across.first;
    const VolumeBox shown = shown_row(header, grid, row, across, down, room);
    if (box_size(shown) == 0) {
        return;
    }
    const VolumeBox band = band_of(shown, down);
    const BoxPixels pixels = volume.box(band);
    const std::size_t line = static_cast<std::size_t>(shown.y - band.y) * pixels.row_stride;
    for (std::int32_t column = 0; column < shown.depth; ++column) {
        const std::int64_t start = std::int64_t{column} * grid.slice_width;
        const auto count =
            static_cast<std::size_t>(std::min<std::int64_t>(shown.width, room - start));
        std::uint8_t *tile = indices.data() + across.first + start;
        if (pixels.first == nullptr) {
            std::fill_n(tile, count,
                        palette_index(rescale(0.0F, mapping.rescaling), mapping.range));
        } else {
            const auto slice = static_cast<std::size_t>(column) * pixels.slice_stride;
            map_pixels(pixels.first + line + slice, count, mapping, tile);
        }
    }
}

} // namespace velmorant
