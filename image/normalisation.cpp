#include "image/normalisation.h"

#include "image/allocate.h"
#include "image/image_geometry.h"
#include "image/volume_statistics.h"
#include "image/wide_vectors.h"
#include "prefs/error_report.h"
#include "prefs/numbers.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>
#include <span>
#include <string>

namespace velmorant
{

static float find_average(VolumePixels &volume, const FieldSurvey &survey, float lower, float peak)
{
    const BandSum band = sum_band(volume, survey, lower, peak);
    if (band.count == 0) {
        std::puts("warning:  no pixel to calculate global value...");
        return 0.0F;
    }
    return band.sum / static_cast<float>(band.count);
}

// Whether a histogram can have so many bins and a counter more.
static bool is_legal_bin_count(std::int32_t bin_count)
{
    return bin_count >= 1 && bin_count < std::numeric_limits<std::int32_t>::max();
}

// The number of pixels that the bins below the peak and its own have to hold.
static std::int32_t peak_target(std::int32_t in_field, float peak_threshold)
{
    return truncate_to_int32(static_cast<double>(static_cast<float>(in_field) * peak_threshold));
}

// How many of the largest pixels tell where the peak is, or 0 where they are too many to keep. A
// volume with pixels out of field needs no more than one without, but for what single precision
// rounds.
static std::size_t pixels_to_keep(std::size_t pixels, float peak_threshold)
{
    const auto count = static_cast<std::int32_t>(pixels);
    const std::int64_t above_peak = std::int64_t{count} - peak_target(count, peak_threshold);
    const std::int64_t kept = std::max<std::int64_t>(above_peak, 0) + count / 1048576 + 2;
    return kept > static_cast<std::int64_t>(MostKept) ? 0 : static_cast<std::size_t>(kept);
}

void norm_histogram(VolumePixels &volume, const NormSet &norm_set, NormValues &values, float check)
{
    const ImageHeader &header = volume.header();
    const std::int32_t bin_count = norm_set.bin_count;
    const std::int32_t counters = is_legal_bin_count(bin_count) ? bin_count + 1 : 0;
    const Block<std::int32_t> block(allocate_int_zero(counters, "hist"));
    const std::span histogram(block.get(), static_cast<std::size_t>(counters));
    if (header.num_gates >= 2) {
        print_error_message(1, "gated image not support in the current version (norm_histogram)");
    }
    FieldSurvey survey = survey_field(
        volume, check, pixels_to_keep(checked_image_size(header), norm_set.peak_threshold));
    const FieldRange &range = survey.range;
    values.max = range.max;
    values.min = range.min;
    if (std::fabs(static_cast<double>(values.min) - static_cast<double>(values.max)) <= 1e-20) {
        values.avg = values.max;
        values.peak = values.max;
        std::puts("warning: uniform pixel value in the image matrix...");
        return;
    }
    if (!is_legal_bin_count(bin_count)) {
        print_error_message(
            2, "illegal number of bins for normalization: ", std::to_string(bin_count).c_str());
    }
    const float step = (values.max - values.min) / static_cast<float>(bin_count);
    if (std::fabs(static_cast<double>(step)) <= 1e-20) {
        print_error_message(1, "invalid 'step' in normalization");
    }
    const std::size_t peak_bin = find_peak_bin(
        volume, survey, step, peak_target(range.count, norm_set.peak_threshold), histogram);
    values.peak = static_cast<float>(peak_bin) * step + values.min;
    values.avg = find_average(volume, survey, values.peak * norm_set.lower_threshold, values.peak);
}

void norm_histogram(const float *volume, const ImageHeader &header, const NormSet &norm_set,
                    NormValues &values, float check)
{
    VolumePixels pixels(volume, header);
    norm_histogram(pixels, norm_set, values, check);
}

VELMORANT_WIDE_VECTORS
static void rescale_pixels(float *pixels, std::size_t count, const Rescaling &how)
{
    const Rescaling rescaling = how; // which no pixel that is written can change
    for (std::size_t i = 0; i < count; ++i) {
        pixels[i] = rescale(pixels[i], rescaling);
    }
}

void multiply_image_with_constant(float *volume, const ImageHeader &header, float factor,
                                  float check, float out_value)
{
    rescale_pixels(volume, checked_image_size(header), {factor, check, out_value});
}

// A value as printf takes it. NaN loses its sign, which processors set differently.
static double printable(float value)
{
    return std::isnan(value) ? std::numeric_limits<double>::quiet_NaN()
                             : static_cast<double>(value);
}

void print_normvalue(const NormValues &values)
{
    std::printf("Max=%7.3f;Min=%7.3f;Peak=%7.3f;Avg=%7.3f\n", printable(values.max),
                printable(values.min), printable(values.peak), printable(values.avg));
}

} // namespace velmorant
