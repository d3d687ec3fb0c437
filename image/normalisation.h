#pragma once

// In-field statistics of a volume, and the scaling that uses them. A pixel strictly below the check
// value marks the area outside of the field of view and takes no part; one equal to it does.
//
// The statistics are computed in single precision, from the last pixel of the volume to its first,
// so that the printed values are the same on every machine. A NaN counts as an in-field pixel (in
// the histogram's lowest bin), but is never a maximum, a minimum or part of the average.

#include "image/image_header.h"
#include "image/volume_pixels.h"
#include "prefs/norm_set.h"

#include <limits>

namespace velmorant
{

struct NormValues {
    float max;  // largest in-field pixel; -1e30 where there is none
    float min;  // smallest in-field pixel; 1e30 where there is none
    float peak; // lower edge of the first histogram bin at which the running count reaches
                // peak_threshold of the in-field pixels
    float avg;  // mean of the pixels from lower_threshold * peak up to, without, peak
};

// Measures one volume. The histogram divides max - min into bin_count bins; max itself falls into
// one more, and a peak that is never reached lies at the end of that.
// A volume of one value prints "warning: uniform pixel value in the image matrix..." and gets that
// value for peak and avg; where no pixel is between the limits "warning:  no pixel to calculate
// global value..." is printed and avg is 0.
// Fatal, in this order; and as `checked_image_size` and `VolumePixels::box` say:
//   "can't allocate memory for hist (4KB)"
//   "gated image not support in the current version (norm_histogram)"    two gates or more
//   "illegal number of bins for normalization: 0"    below 1 or 2^31 - 1, and several values
//   "invalid 'step' in normalization"                a bin would be narrower than 1e-20
void norm_histogram(const float *volume, const ImageHeader &header, const NormSet &norm_set,
                    NormValues &values, float check);
void norm_histogram(VolumePixels &volume, const NormSet &norm_set, NormValues &values, float check);

// How a volume is brought to other values: every pixel is multiplied by `factor`, but one strictly
// below `check` becomes `out_value` instead.
struct Rescaling {
    float factor;
    float check;
    float out_value;
};

// Leaves every pixel as it is.
inline constexpr Rescaling NoRescaling{
    .factor = 1.0F, .check = -std::numeric_limits<float>::infinity(), .out_value = 0.0F};

[[gnu::always_inline]] inline float rescale(float pixel, const Rescaling &rescaling)
{
    const float scaled = pixel * rescaling.factor;
    return rescaling.check > pixel ? rescaling.out_value : scaled;
}

// Rescales a volume in place. (The generator does the same while it renders.)
void multiply_image_with_constant(float *volume, const ImageHeader &header, float factor,
                                  float check, float out_value);

// Prints the four values as one line on standard output.
void print_normvalue(const NormValues &values);

} // namespace velmorant
