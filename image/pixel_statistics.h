#pragma once

// The three passes over a volume that its normalisation needs. Each gives to the bit what a plain
// loop over the pixels, from the last to the first, one at a time, would give.
//
// A pixel strictly below `check` is out of field and takes no part; a NaN is in field.

#include "image/allocate.h"

#include <cstddef>
#include <cstdint>
#include <span>

namespace velmorant
{

using Pixels = std::span<const float>;

struct FieldRange {
    float max;          // largest in-field pixel, -1e30 where none is larger
    float min;          // smallest in-field pixel, 1e30 where none is smaller
    std::int32_t count; // in-field pixels
};

// What the first pass finds. NaN is neither the largest nor the smallest; of zeros of both signs
// the last counts.
struct FieldSurvey {
    Pixels pixels;
    float check;
    FieldRange range;
    // Of blocks of pixels that follow one another, what no in-field pixel is larger than: from this
    // later passes see what they needn't look at.
    Block<float> block_maxima;
};

// pixels: at most 2^31 - 1, which have to stay as they are as long as the survey is used.
FieldSurvey survey_field(Pixels pixels, float check);

// The first bin at which the number of in-field pixels in it and the bins below reaches `target`;
// or the number of bins, where none does. The bin of a pixel is (pixel - min) / step in single
// precision, truncated toward zero and held within the histogram; that of a NaN is the first.
// histogram: from 1 to 2^31 - 1 counters, all of them 0.
std::size_t find_peak_bin(const FieldSurvey &survey, float step, std::int32_t target,
                          std::span<std::int32_t> histogram);

struct BandSum {
    float sum; // in single precision, added one by one from the last pixel to the first
    std::int32_t count;
};

// Sums the in-field pixels from `lower` up to, without, `upper`.
BandSum sum_band(const FieldSurvey &survey, float lower, float upper);

} // namespace velmorant
