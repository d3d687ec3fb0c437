#include "image/short_scaling.h"

#include "prefs/numbers.h"

#include <cmath>

namespace velmorant
{

static bool is_zero(double value)
{
    return std::fabs(value) <= 1e-20;
}

float find_pix_max(const float *buffer, std::size_t slice_pixels, std::size_t slices,
                   float threshold)
{
    float highest = -1e30F;
    float lowest = 1e30F;
    for (std::size_t i = slice_pixels * slices; i-- > 0;) {
        const float value = buffer[i];
        highest = value > highest ? value : highest;
        lowest = value > threshold && value < lowest ? value : lowest;
    }
    return highest * highest >= lowest * lowest ? highest : std::fabs(lowest);
}

ShortScaling choose_short_scaling(float extreme, float quantisation)
{
    if (is_zero(static_cast<double>(quantisation))) {
        return {.step = extreme / 32700.0F, .stated = extreme};
    }
    return {.step = 1.0F / quantisation, .stated = 32700.0F / quantisation};
}

StoredShort quantise(float value, float step)
{
    if (is_zero(static_cast<double>(step))) {
        return {.quantised = 0, .overflow = false};
    }
    const auto quotient = static_cast<double>(value / step);
    const double rounded = value >= 0.0F ? quotient + 0.5 : quotient - 0.5;
    const std::int32_t quantised = truncate_to_int32(rounded);
    const std::uint32_t low_bits = (static_cast<std::uint32_t>(quantised) + 32700U) & 0xFFFFU;
    return {.quantised = quantised, .overflow = low_bits > 65400U || exceeds_int32(rounded)};
}

} // namespace velmorant
