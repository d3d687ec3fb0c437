#include "app/colour_row.h"

#include <cstring>

namespace velmorant
{

PackedPalette pack_palette()
{
    PackedPalette palette{};
    for (std::size_t i = 0; i < palette.size(); ++i) {
        palette.at(i) = {red.at(i), green.at(i), blue.at(i), 0};
    }
    return palette;
}

void colour_row(std::uint8_t *line, std::size_t count, const PackedPalette &palette)
{
    if (count == 0) {
        return;
    }
    // A pixel's fourth byte gives way to the next pixel, and none comes to lie on an index that is
    // still to be read: the last one ends where the last index stood, so it takes three bytes alone.
    const std::uint8_t *indices = line + (ColourBytes - 1) * count;
    const std::size_t last = count - 1;
    for (std::size_t i = 0; i < last; ++i) {
        std::memcpy(line + ColourBytes * i, palette[indices[i]].data(), ColourBytes + 1);
    }
    std::memcpy(line + ColourBytes * last, palette[indices[last]].data(), ColourBytes);
}

} // namespace velmorant
