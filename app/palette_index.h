#pragma once

#include <algorithm>
#include <bit>
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
// held within 0 and 254 and truncated. A NaN gives 0.
[[gnu::always_inline]] inline std::uint8_t palette_index(float value, const PixelRange &range)
{
    constexpr auto top = static_cast<float>(TopIndex);
    const float position = (value - range.bottom) / (range.top - range.bottom) * top;
    const float above = position > 0.0F ? position : 0.0F; // a NaN is not above 0
    // Numbers that are not negative are in the order of their bits, as integers: compilers make shorter
    // loops of this than of a second comparison of floats.
    const auto bits =
        std::min(std::bit_cast<std::int32_t>(above), std::bit_cast<std::int32_t>(top));
    return static_cast<std::uint8_t>(static_cast<std::int32_t>(std::bit_cast<float>(bits)));
}

} // namespace velmorant
