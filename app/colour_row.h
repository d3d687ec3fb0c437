#pragma once

#include "app/palette.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace velmorant
{

inline constexpr std::size_t ColourBytes = 3; // red, green, blue

// The palette with the colour of each index in one word: red, green, blue and a byte of no meaning.
using PackedPalette = std::array<std::array<std::uint8_t, ColourBytes + 1>, PaletteEntries>;

// Packs the tables of app/palette.h.
PackedPalette pack_palette();

// Turns the palette indices of a row into pixels in place.
// line: `count` pixels of ColourBytes, the last third of which holds the indices.
void colour_row(std::uint8_t *line, std::size_t count, const PackedPalette &palette);

} // namespace velmorant
