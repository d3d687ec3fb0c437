#pragma once

#include <cstdint>

namespace velmorant
{

// Palette indices run from 0 to 254: entry 255 is never used.
inline constexpr std::int32_t TopIndex = 254;

// Which pixel values the ends of the palette stand for.
struct PixelRange {
    float bottom; // index 0
    float top;    // index 254
};

// The palette index of a pixel value: (value - bottom) / (top - bottom) * 254 in single precision,
// truncated and held within 0 and 254. A NaN gives 0.
inline std::uint8_t palette_index(float value, const PixelRange &range)
{
    constexpr auto top = static_cast<float>(TopIndex);
    const float index = (value - range.bottom) / (range.top - range.bottom) * top;
    // Held within the palette before it is converted. A NaN is not above 0.
    const float above = index > 0.0F ? index : 0.0F;
    const float held = above < top ? above : top;
    return static_cast<std::uint8_t>(static_cast<std::int32_t>(held));
}

} // namespace velmorant
