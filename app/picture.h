#pragma once

#include "app/montage.h"
#include "image/volume_pixels.h"

#include <cstdint>

namespace velmorant
{

// Everything that shapes a picture besides the volume and the palette.
struct PictureStyle {
    MontageGrid grid;
    PixelMapping mapping;
    bool gray;              // no palette: a pixel's gray level is its index
    bool scale_bar;         // a strip of bar_width columns to the right of the montage
    std::int32_t bar_width; // pixels; below 1 nothing is drawn, but a negative width still takes as
                            // many columns from the picture
    float bar_length;       // fraction of the picture's height
};

// In pixels.
struct PictureSize {
    std::int16_t width;
    std::int16_t height;
    std::int16_t montage_width; // what of the montage the picture shows
};

// The size of a picture. Ends the run with "Illegal picture size " and the size, where width or
// height are not within 1 and 32767: a picture holds them as signed 16-bit integers.
PictureSize measure_picture(const PictureStyle &style);

// Renders a volume row by row into an uncompressed TIFF file, 8 bits a sample: gray, or RGB through
// the tables of app/palette.h. When a row can't be written the rest is left out without a word.
// Fatal; and as `VolumePixels::box` says, the file then holding the rows before the failure:
//   "Can't write tiff file"                      the file can't be created
//   "can't allocate memory for scan line"        or "... for tags"
void write_picture(const char *tiff_name, VolumePixels &volume, const PictureStyle &style,
                   const PictureSize &size);

} // namespace velmorant
