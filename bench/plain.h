#pragma once

// The stages of a run as one would write them first: a byte, a pixel, a comparison at a time. What
// the real ones compute has to be the same to the bit.

#include "app/montage.h"
#include "app/palette_index.h"
#include "image/image_header.h"
#include "image/volume_statistics.h"

#include <cstdint>
#include <span>
#include <vector>

namespace bench::plain
{

using Pixels = std::span<const float>;

// A raw volume's pixels. factor: real value of one stored unit, for 16-bit elements.
std::vector<float> decode_shorts(const std::vector<std::uint8_t> &bytes, bool big_endian,
                                 bool is_signed, float factor);
std::vector<float> decode_floats(const std::vector<std::uint8_t> &bytes, bool big_endian);

velmorant::FieldRange find_range(Pixels pixels, float check);
std::size_t find_peak_bin(Pixels pixels, float check, float lowest, float step, std::int32_t target,
                          std::size_t bins);
velmorant::BandSum sum_band(Pixels pixels, float check, float lower, float upper);

// The palette indices of a whole montage, row by row.
std::vector<std::uint8_t> render_montage(Pixels volume, const velmorant::ImageHeader &header,
                                         const velmorant::MontageGrid &grid,
                                         const velmorant::PixelMapping &mapping);

// The same indices as RGB pixels.
std::vector<std::uint8_t> colour_pixels(const std::vector<std::uint8_t> &indices);

} // namespace bench::plain
