#include "app/scale_bar.h"

#include "app/palette_index.h"
#include "prefs/numbers.h"

#include <algorithm>

namespace velmorant
{

ScaleBar place_scale_bar(std::int32_t height, float fraction)
{
    const auto part = static_cast<double>(fraction);
    const auto rows = static_cast<double>(static_cast<float>(height));
    const std::int32_t top = truncate_to_int32((1.0 - part) * rows * 0.5);
    const std::int32_t foot = truncate_to_int32((1.0 + part) * rows * 0.5);
    return {.top = top,
            .foot = foot,
            .length = static_cast<float>(std::int64_t{foot} - std::int64_t{top})};
}

// How far up the bar the row is, from 0 at its foot to `levels` at its top.
static std::int32_t level(const ScaleBar &bar, std::int32_t row, float levels)
{
    if (row <= bar.top || row >= bar.foot) {
        return 0;
    }
    const auto from_foot = static_cast<float>(std::int64_t{bar.foot} - row);
    return truncate_to_int32(static_cast<double>(from_foot / bar.length * levels));
}

std::uint8_t scale_bar_index(const ScaleBar &bar, std::int32_t row)
{
    return static_cast<std::uint8_t>(
        std::clamp(level(bar, row, static_cast<float>(TopIndex)), 0, TopIndex));
}

std::uint8_t scale_bar_gray(const ScaleBar &bar, std::int32_t row)
{
    return static_cast<std::uint8_t>(std::clamp(level(bar, row, 255.0F), 0, 255));
}

} // namespace velmorant
