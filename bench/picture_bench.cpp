// From the volume to the picture: rendering rows, in gray and in colour, and writing the file.

#include "app/colour_row.h"
#include "app/palette.h"
#include "app/picture.h"
#include "bench/plain.h"
#include "bench/stage.h"

#include <algorithm>
#include <span>

#include <tiffio.h>

using namespace velmorant;
using bench::plain::Pixels;

static PictureStyle style_of(const ImageHeader &header, bool gray)
{
    PictureStyle style{};
    style.grid = lay_out_montage(header.num_slices, 10, header.x_dim, header.y_dim);
    style.mapping = {.rescaling = {.factor = 25.0F, .check = 1.0F, .out_value = -1e10F},
                     .range = {.bottom = 0.0F, .top = 1000.0F}};
    style.gray = gray;
    return style;
}

static void make_palette()
{
    for (std::size_t i = 0; i < PaletteEntries; ++i) {
        red.at(i) = static_cast<std::uint8_t>(i);
        green.at(i) = static_cast<std::uint8_t>(7 * i);
        blue.at(i) = static_cast<std::uint8_t>(255 - i);
    }
}

static std::vector<std::uint8_t> plain_picture(const bench::Study &study, const PictureStyle &style)
{
    const auto indices =
        bench::plain::render_montage(study.pixels, study.header, style.grid, style.mapping);
    return style.gray ? indices : bench::plain::colour_pixels(indices);
}

static void rendering_stage(benchmark::State &state, bool gray)
{
    const bench::Study &study = bench::phantom_study(state);
    const PictureStyle style = style_of(study.header, gray);
    const PictureSize size = measure_picture(style);
    make_palette();
    const PackedPalette palette = pack_palette();
    const auto width = static_cast<std::size_t>(size.width);
    const std::size_t line_bytes = (gray ? 1 : ColourBytes) * width;
    VolumePixels volume(study.pixels.data(), study.header);
    const auto render_row = [&](std::uint8_t *line, std::int32_t row) {
        render_montage_row(volume, style.grid, style.mapping, row,
                           {line + line_bytes - width, width});
        if (!gray) {
            colour_row(line, width, palette);
        }
    };

    std::vector<std::uint8_t> picture(line_bytes * static_cast<std::size_t>(size.height));
    for (std::int32_t row = 0; row < size.height; ++row) {
        render_row(&picture[line_bytes * static_cast<std::size_t>(row)], row);
    }
    if (bench::check_stage(state, picture == plain_picture(study, style))) {
        bench::time_stage(state, Pixels(study.pixels).size_bytes(), [&] {
            for (std::int32_t row = 0; row < size.height; ++row) {
                render_row(picture.data(), row);
            }
        });
    }
}
BENCHMARK_CAPTURE(rendering_stage, gray, true)->Name("render/gray")->Apply(bench::stage_sizes);
BENCHMARK_CAPTURE(rendering_stage, colour, false)->Name("render/colour")->Apply(bench::stage_sizes);

// The pixels of a picture file, line by line.
static std::vector<std::uint8_t> read_picture(const std::string &file, std::int32_t height)
{
    std::vector<std::uint8_t> pixels;
    TIFF *tiff = TIFFOpen(file.c_str(), "r");
    std::vector<std::uint8_t> line(static_cast<std::size_t>(TIFFScanlineSize(tiff)));
    for (std::int32_t row = 0; row < height; ++row) {
        TIFFReadScanline(tiff, line.data(), static_cast<std::uint32_t>(row));
        pixels.insert(pixels.end(), line.begin(), line.end());
    }
    TIFFClose(tiff);
    return pixels;
}

static void writing_stage(benchmark::State &state, bool gray)
{
    const bench::Study &study = bench::phantom_study(state);
    const PictureStyle style = style_of(study.header, gray);
    const PictureSize size = measure_picture(style);
    make_palette();
    const std::string file = bench::scratch_file("picture.tif");
    VolumePixels volume(study.pixels.data(), study.header);
    const auto write = [&] {
        write_picture(file.c_str(), volume, style, size);
    };
    write();
    if (bench::check_stage(state, read_picture(file, size.height) == plain_picture(study, style))) {
        bench::time_stage(state, Pixels(study.pixels).size_bytes(), write);
    }
}
BENCHMARK_CAPTURE(writing_stage, gray, true)->Name("write/gray")->Apply(bench::stage_sizes);
BENCHMARK_CAPTURE(writing_stage, colour, false)->Name("write/colour")->Apply(bench::stage_sizes);
