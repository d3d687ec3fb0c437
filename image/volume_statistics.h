#pragma once

// The passes over a volume that its normalisation needs. Each result is to the bit that of a plain
// loop over the pixels, one at a time, from the last to the first.
//
// A pixel strictly below `check` is out of field and takes no part; a NaN is in field.

#include "image/largest_pixels.h"
#include "image/volume_pixels.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace velmorant
{

struct FieldRange {
    float max;          // largest in-field pixel, -1e30 where none is larger
    float min;          // smallest in-field pixel, 1e30 where none is smaller
    std::int32_t count; // in-field pixels
};

// What the first pass finds. NaN is neither the largest nor the smallest; of zeros of both signs
// the last in the volume is.
struct FieldSurvey {
    float check;
    FieldRange range;
    // Upper bound of the in-field pixels of each piece of the volume.
    std::vector<float> piece_maxima;
    LargestPixels largest;
};

// kept: how many of the largest pixels to keep, at most MostKept.
inline constexpr std::size_t MostKept = 262144;
FieldSurvey survey_field(VolumePixels &volume, float check, std::size_t kept);

// The first bin at which the number of in-field pixels in it and the bins below reaches `target`;
// or the number of bins, where none does. The bin of a pixel is (pixel - min) / step in single
// precision, truncated toward zero and held within the histogram; that of a NaN is the first.
// Counts pixels only if the survey has not kept enough of the largest ones. Reorders survey.largest.
// histogram: from 1 to 2^31 - 1 counters, all of them 0.
std::size_t find_peak_bin(VolumePixels &volume, FieldSurvey &survey, float step,
                          std::int32_t target, std::span<std::int32_t> histogram);

struct BandSum {
    float sum; // in single precision, added one by one from the last pixel to the first
    std::int32_t count;
};

// Sums the in-field pixels from `lower` up to, without, `upper`.
BandSum sum_band(VolumePixels &volume, const FieldSurvey &survey, float lower, float upper);

} // namespace velmorant
