#include "app/picture.h"

#include "app/palette.h"
#include "app/scale_bar.h"
#include "prefs/error_report.h"

#include <algorithm>
#include <limits>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include <tiffio.h>

namespace velmorant
{

struct Close_Tiff {
    void operator()(TIFF *tiff) const
    {
        TIFFClose(tiff);
    }
};
using Tiff_Handle = std::unique_ptr<TIFF, Close_Tiff>;

struct Free_Tiff_Memory {
    void operator()(std::uint8_t *block) const
    {
        _TIFFfree(block);
    }
};
using Tiff_Line = std::unique_ptr<std::uint8_t[], Free_Tiff_Memory>;

// Width and height of a picture, and of the montage in it.
struct PictureSize {
    std::int16_t width;
    std::int16_t height;
    std::int32_t montage_width;
};

static bool fits_picture(std::int64_t length)
{
    return length >= 1 && length <= std::numeric_limits<std::int16_t>::max();
}

static PictureSize picture_size(const PictureStyle &style)
{
    const std::int64_t montage_width = std::int64_t{style.grid.columns} * style.grid.slice_width;
    const std::int64_t width = montage_width + (style.scale_bar ? style.bar_width : 0);
    const std::int64_t height = std::int64_t{style.grid.rows} * style.grid.slice_height;
    if (!fits_picture(montage_width) || !fits_picture(width) || !fits_picture(height)) {
        const std::string size =
            std::to_string(std::max(montage_width, width)) + " x " + std::to_string(height);
        print_error_message(3, "illegal picture size ", size.c_str(),
                            " (1 to 32767 pixels each way)");
    }
    return {.width = static_cast<std::int16_t>(width),
            .height = static_cast<std::int16_t>(height),
            .montage_width = static_cast<std::int32_t>(montage_width)};
}

static void set_tags(TIFF *tiff, const PictureSize &size, bool gray)
{
    TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, size.width);
    TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, size.height);
    TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, 8);
    TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, gray ? PHOTOMETRIC_MINISBLACK : PHOTOMETRIC_RGB);
    TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, gray ? 1 : 3);
    TIFFSetField(tiff, TIFFTAG_COMPRESSION, COMPRESSION_NONE);
    TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
    TIFFSetField(tiff, TIFFTAG_XRESOLUTION, 5.0);
    TIFFSetField(tiff, TIFFTAG_YRESOLUTION, 5.0);
    TIFFSetField(tiff, TIFFTAG_RESOLUTIONUNIT, RESUNIT_NONE);
    TIFFSetField(tiff, TIFFTAG_SOFTWARE, "VELMORANT");
    TIFFSetField(tiff, TIFFTAG_ARTIST, "Orlavesk Tarn");
    TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, TIFFDefaultStripSize(tiff, 30));
}

// Spreads palette indices into pixels: gray levels or RGB bytes.
static void colour_pixels(std::span<const std::uint8_t> indices, bool gray, std::uint8_t *pixels)
{
    if (gray) {
        std::ranges::copy(indices, pixels);
        return;
    }
    for (const std::uint8_t index : indices) {
        *pixels++ = red[index];
        *pixels++ = green[index];
        *pixels++ = blue[index];
    }
}

// Draws `width` pixels of one row of the scale bar.
static void draw_scale_bar(const ScaleBar &bar, std::int32_t row, std::int32_t width, bool gray,
                           std::uint8_t *pixels)
{
    const std::uint8_t level = gray ? scale_bar_gray(bar, row) : scale_bar_index(bar, row);
    const std::vector<std::uint8_t> levels(static_cast<std::size_t>(std::max(width, 0)), level);
    colour_pixels(levels, gray, pixels);
}

static Tiff_Line allocate_line(TIFF *tiff)
{
    Tiff_Line line(static_cast<std::uint8_t *>(_TIFFmalloc(TIFFScanlineSize(tiff))));
    if (!line) {
        print_error_message(1, "can't allocate memory for a line of the picture");
    }
    return line;
}

static void write_rows(TIFF *tiff, const float *volume, const ImageHeader &header,
                       const PictureStyle &style, const PictureSize &size)
{
    const Tiff_Line line = allocate_line(tiff);
    std::vector<std::uint8_t> indices(static_cast<std::size_t>(size.montage_width));
    // A negative bar width leaves less of the picture than the montage takes.
    const auto visible =
        static_cast<std::size_t>(std::min<std::int32_t>(size.montage_width, size.width));
    const ScaleBar bar = place_scale_bar(size.height, style.bar_length);
    for (std::int32_t row = 0; row < size.height; ++row) {
        render_montage_row(volume, header, style.grid, style.range, row, indices);
        colour_pixels(std::span(indices).first(visible), style.gray, line.get());
        if (style.scale_bar) {
            draw_scale_bar(bar, row, style.bar_width, style.gray,
                           line.get() + visible * (style.gray ? 1 : 3));
        }
        if (TIFFWriteScanline(tiff, line.get(), static_cast<std::uint32_t>(row), 0) < 0) {
            break;
        }
    }
}

void write_picture(const char *tiff_name, const float *volume, const ImageHeader &header,
                   const PictureStyle &style)
{
    const PictureSize size = picture_size(style);
    // By default the library prints its errors and warnings on standard error.
    TIFFSetErrorHandler(nullptr);
    TIFFSetWarningHandler(nullptr);
    const Tiff_Handle tiff(TIFFOpen(tiff_name, "w"));
    if (!tiff) {
        print_error_message(1, "Can't write tiff file");
    }
    set_tags(tiff.get(), size, style.gray);
    write_rows(tiff.get(), volume, header, style, size);
}

} // namespace velmorant
