#pragma once

// The palettes of the package, and how their 256 entries come from the few numbers that define them.
// Image pixels use the entries 0 (the bottom of the range, and the margins) to 254 (its top).

#include <array>
#include <cstdint>
#include <span>
#include <string_view>

namespace velmorant
{

// 256 red, 256 green and 256 blue values, as a palette file has them.
using PaletteTable = std::array<std::array<std::uint8_t, 256>, 3>;

struct NamedPalette {
    std::string_view name;
    PaletteTable (*make)();
};

// All of them, the package's default first.
std::span<const NamedPalette> all_palettes();

} // namespace velmorant
