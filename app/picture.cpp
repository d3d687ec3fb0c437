#include "app/picture.h"

#include "app/colour_row.h"
#include "app/scale_bar.h"
#include "prefs/error_report.h"

#include <algorithm>
#include <limits>
#include <memory>
#include <span>
#include <string>

#include <tiffio.h>

namespace velmorant
{

namespace
{

struct CloseTiff {
    void operator()(TIFF *tiff) const
    {
        TIFFClose(tiff);
    }
};
using TiffHandle = std::unique_ptr<TIFF, CloseTiff>;

struct FreeTiffMemory {
    void operator()(std::uint8_t *block) const
    {
        _TIFFfree(block);
    }
};
using TiffLine = std::unique_ptr<std::uint8_t[], FreeTiffMemory>;

} // namespace

static bool fits_picture(std::int64_t length)
{
    return length >= 1 && length <= std::numeric_limits<std::int16_t>::max();
}

PictureSize measure_picture(const PictureStyle &style)
{
    const std::int64_t montage_width = std::int64_t{style.grid.columns} * style.grid.slice_width;
    const std::int64_t width = montage_width + (style.scale_bar ? style.bar_width : 0);
    const std::int64_t height = std::int64_t{style.grid.rows} * style.grid.slice_height;
    if (!fits_picture(width) || !fits_picture(height)) {
        const std::string size = std::to_string(width) + " x " + std::to_string(height);
        print_error_message(3, "Illegal picture size ", size.c_str(),
                            " (1 to 32767 pixels each way)");
    }
    return {.width = static_cast<std::int16_t>(width),
            .height = static_cast<std::int16_t>(height),
            .montage_width = static_cast<std::int16_t>(std::min(montage_width, width))};
}

// False where there is no memory for the texts. The library has lost its list of them then, follows
// it all the same, and must not be asked for anything more, nor to close the file.
static bool set_tags(TIFF *tiff, const PictureSize &size, bool gray)
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
    if (TIFFSetField(tiff, TIFFTAG_SOFTWARE, "VELMORANT") != 1 ||
        TIFFSetField(tiff, TIFFTAG_ARTIST, "Orlavesk Tarn") != 1) {
        return false;
    }
    TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, TIFFDefaultStripSize(tiff, 30));
    return true;
}

static TiffLine allocate_line(TIFF *tiff)
{
    TiffLine line(static_cast<std::uint8_t *>(_TIFFmalloc(TIFFScanlineSize(tiff))));
    if (!line) {
        print_error_message(1, "can't allocate memory for scan line");
    }
    return line;
}

static void write_rows(TIFF *tiff, VolumePixels &volume, const PictureStyle &style,
                       const PictureSize &size)
{
    const TiffLine line = allocate_line(tiff);
    const auto width = static_cast<std::size_t>(size.width);
    const auto montage_width = static_cast<std::size_t>(size.montage_width);
    // The indices of a row: its pixels, or the last third of the line that its colours fill.
    const std::span indices(line.get() + (style.gray ? 0 : (ColourBytes - 1) * width), width);
    const PackedPalette palette = pack_palette();
    const ScaleBar bar = place_scale_bar(size.height, style.bar_length);
    for (std::int32_t row = 0; row < size.height; ++row) {
        render_montage_row(volume, style.grid, style.mapping, row, indices.first(montage_width));
        std::ranges::fill(indices.subspan(montage_width),
                          style.gray ? scale_bar_gray(bar, row) : scale_bar_index(bar, row));
        if (!style.gray) {
            colour_row(line.get(), width, palette);
        }
        if (TIFFWriteScanline(tiff, line.get(), static_cast<std::uint32_t>(row), 0) < 0) {
            break;
        }
    }
}

void write_picture(const char *tiff_name, VolumePixels &volume, const PictureStyle &style,
                   const PictureSize &size)
{
    // By default the library prints its errors and warnings on standard error.
    TIFFSetErrorHandler(nullptr);
    TIFFSetWarningHandler(nullptr);
    TiffHandle tiff(TIFFOpen(tiff_name, "w"));
    if (!tiff) {
        print_error_message(1, "Can't write tiff file");
    }
    if (!set_tags(tiff.get(), size, style.gray)) {
        static_cast<void>(tiff.release());
        print_error_message(1, "can't allocate memory for tags");
    }
    write_rows(tiff.get(), volume, style, size);
}

} // namespace velmorant
