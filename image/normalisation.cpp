#include "image/normalisation.h"
#include "image/image_geometry.h"

#include "image/allocate.h"
#include "image/pixel_statistics.h"
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

static float find_average(const FieldSurvey &survey, float lower, float peak)
{
    const BandSum band = sum_band(survey, lower, peak);
    if (band.count == 0) {
        std::puts("warning:  no pixel to calculate global value...");
        return 0.0F;
    }
    return band.sum / static_cast<float>(band.count);
}

static Block<std::int32_t> allocate_histogram(std::int32_t bin_count)
{
    if (bin_count < 1 || bin_count == std::numeric_limits<std::int32_t>::max()) {
        print_error_message(
            2, "illegal number of bins for normalization: ", std::to_string(bin_count).c_str());
    }
    return Block<std::int32_t>(allocate_int_zero(bin_count + 1, "hist"));
}

void norm_histogram(const float *volume, const ImageHeader &header, const NormSet &norm_set,
                    NormValues &values, float check)
{
    const Block<std::int32_t> counters = allocate_histogram(norm_set.bin_count);
    const std::span histogram(counters.get(), static_cast<std::size_t>(norm_set.bin_count) + 1);
    if (header.num_gates >= 2) {
        print_error_message(1, "gated image not support in the current version (norm_histogram)");
    }
    const Pixels pixels(volume, checked_image_size(header));
    const FieldSurvey survey = survey_field(pixels, check);
    const FieldRange &range = survey.range;
    values.max = range.max;
    values.min = range.min;
    if (std::fabs(static_cast<double>(values.min) - static_cast<double>(values.max)) <= 1e-20) {
        values.avg = values.max;
        values.peak = values.max;
        std::puts("warning: uniform pixel value in the image matrix...");
        return;
    }
    const float step = (values.max - values.min) / static_cast<float>(norm_set.bin_count);
    if (std::fabs(static_cast<double>(step)) <= 1e-20) {
        print_error_message(1, "invalid 'step' in normalization");
    }
    const auto target =
        static_cast<double>(static_cast<float>(range.count) * norm_set.peak_threshold);
    const std::size_t peak_bin = find_peak_bin(survey, step, truncate_to_int32(target), histogram);
    values.peak = static_cast<float>(peak_bin) * step + values.min;
    values.avg = find_average(survey, values.peak * norm_set.lower_threshold, values.peak);
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
