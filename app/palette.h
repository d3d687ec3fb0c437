#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace velmorant
{

// The colours of the palette's 256 indices; zero at start.
inline constexpr std::size_t PaletteEntries = 256;
inline std::array<std::uint8_t, PaletteEntries> red, green, blue;

// Fills the three tables from a palette file: 256 red, 256 green and 256 blue bytes and nothing
// before them; what follows is ignored. Only the very last byte may be missing; its entry then
// stays as it was. Ends the run with "Can't open color palette" where the file can't be read or,
// for a shorter file, with "Incomplete color palette".
void load_palette(const char *path);

} // namespace velmorant
