#include "image/normalisation.h"
#include "image/image_geometry.h"

#include "image/allocate.h"
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

using Pixels = std::span<const float>;

static bool in_field(float pixel, float check)
{
    return !(check > pixel);
}

// Finds max and min, and returns the number of in-field pixels.
static std::int32_t find_range(Pixels pixels, float check, NormValues &values)
{
    std::int32_t count = 0;
    float highest = -1e30F;
    float lowest = 1e30F;
    for (std::size_t i = pixels.size(); i-- > 0;) {
        const float pixel = pixels[i];
        if (in_field(pixel, check)) {
            ++count;
            lowest = pixel < lowest ? pixel : lowest;
            highest = pixel > highest ? pixel : highest;
        }
    }
    values.max = highest;
    values.min = lowest;
    return count;
}

// Counts the in-field pixels by bin, from `lowest` on in steps of `step`.
static void fill_histogram(Pixels pixels, float check, float lowest, float step,
                           std::span<std::int32_t> histogram)
{
    const auto last_bin = static_cast<std::int32_t>(histogram.size() - 1);
    for (std::size_t i = pixels.size(); i-- > 0;) {
        const float pixel = pixels[i];
        if (in_field(pixel, check)) {
            const std::int32_t bin =
                truncate_to_int32(static_cast<double>((pixel - lowest) / step));
            ++histogram[static_cast<std::size_t>(std::clamp(bin, 0, last_bin))];
        }
    }
}

// The first bin at which the running count reaches the target, or the number of counters.
static std::size_t find_peak_bin(std::span<const std::int32_t> histogram, std::int32_t target)
{
    std::int32_t sum = 0;
    std::size_t bin = 0;
    for (; bin < histogram.size(); ++bin) {
        sum += histogram[bin];
        if (sum >= target) {
            break;
        }
    }
    return bin;
}

static float find_average(Pixels pixels, float check, float lower, float peak)
{
    float sum = 0.0F;
    std::int32_t count = 0;
    for (std::size_t i = pixels.size(); i-- > 0;) {
        const float pixel = pixels[i];
        if (in_field(pixel, check) && pixel >= lower && pixel < peak) {
            sum += pixel;
            ++count;
        }
    }
    if (count == 0) {
        std::puts("warning:  no pixel to calculate global value...");
        return 0.0F;
    }
    return sum / static_cast<float>(count);
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
    const std::int32_t count = find_range(pixels, check, values);
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
    fill_histogram(pixels, check, values.min, step, histogram);
    const float target = static_cast<float>(count) * norm_set.peak_threshold;
    const std::size_t peak_bin =
        find_peak_bin(histogram, truncate_to_int32(static_cast<double>(target)));
    values.peak = static_cast<float>(peak_bin) * step + values.min;
    values.avg = find_average(pixels, check, values.peak * norm_set.lower_threshold, values.peak);
}

void multiply_image_with_constant(float *volume, const ImageHeader &header, float factor,
                                  float check, float out_value)
{
    for (float &pixel : std::span(volume, checked_image_size(header))) {
        pixel = check > pixel ? out_value : pixel * factor;
    }
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
