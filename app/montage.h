#pragma once

// The montage: all slices of a volume side by side, each centred in a tile of its own, and every
// pixel mapped to a palette index.

#include "app/palette_index.h"
#include "image/normalisation.h"
#include "image/volume_pixels.h"

#include <cstdint>
#include <span>

namespace velmorant
{

// The grid, in pixels. Slice s is in tile row s / columns and tile column s % columns.
struct MontageGrid {
    std::int32_t columns;
    std::int32_t slice_width;
    std::int32_t slice_height;
    std::int32_t rows; // as many tile rows as the slices need
};

// Lays out `num_slices` slices.
// Ends the run with "Illegal NumColumn: ", "Illegal slice_width: " or "Illegal slice_height: " and
// the value where one is below 1.
MontageGrid lay_out_montage(std::int32_t num_slices, std::int32_t columns, std::int32_t slice_width,
                            std::int32_t slice_height);

// What makes a palette index of a pixel: it is rescaled, and then has its place in the range.
struct PixelMapping {
    Rescaling rescaling;
    PixelRange range;
};

// Computes the palette indices of one picture row, without the scale bar, as far as there is room:
// a picture may show less than the whole montage. Rows that follow one another are read together.
// row: from 0 to rows * slice_height - 1.
// indices: columns * slice_width bytes, or fewer for the left part of the row, but at most 32767.
// Where a tile shows no pixel of a slice it shows the value 0.0, which isn't rescaled.
void render_montage_row(VolumePixels &volume, const MontageGrid &grid, const PixelMapping &mapping,
                        std::int32_t row, std::span<std::uint8_t> indices);

} // namespace velmorant
