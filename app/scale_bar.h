#pragma once

// The scale bar: a strip beside the montage in which the palette runs from high values at the top
// to low ones at the foot, centred in the height of the picture.

#include <cstdint>

namespace velmorant
{

// The rows strictly between `top` and `foot` are inside the bar, whose length is foot - top.
struct ScaleBar {
    std::int32_t top;
    std::int32_t foot;
    float length;
};

// Places a bar in a picture of `height` rows.
// fraction: height of the bar as a fraction of the picture's; it is not checked, and a bar longer
// than the picture shows its middle.
ScaleBar place_scale_bar(std::int32_t height, float fraction);

// The palette index (0 to 254) and the gray level (0 to 255) of row `row`, row 0 at the top; both
// are 0 outside of the bar.
std::uint8_t scale_bar_index(const ScaleBar &bar, std::int32_t row);
std::uint8_t scale_bar_gray(const ScaleBar &bar, std::int32_t row);

} // namespace velmorant
