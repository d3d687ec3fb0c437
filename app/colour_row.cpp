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

// Indices that are looked at together.
static constexpr std::size_t GroupIndices = sizeof(std::uint64_t);

static bool is_background(const std::uint8_t *indices)
{
    std::uint64_t group;
    std::memcpy(&group, indices, sizeof(group));
    return group == 0;
}

// As many pixels of index 0.
static std::array<std::uint8_t, GroupIndices * ColourBytes>
background_pixels(const PackedPalette &palette)
{
    std::array<std::uint8_t, GroupIndices * ColourBytes> pixels{};
    for (std::size_t i = 0; i < pixels.size(); ++i) {
        pixels.at(i) = palette[0].at(i % ColourBytes);
    }
    return pixels;
}

void colour_row(std::uint8_t *line, std::size_t count, const PackedPalette &palette)
{
    // None of the pixels that are written, nor the fourth byte that gives way to the next one, comes
    // to lie on an index that is still to be read: the last pixel ends where the last index stood.
    const std::uint8_t *indices = line + (ColourBytes - 1) * count;
    const auto background = background_pixels(palette);
    std::size_t i = 0;
    for (; i + GroupIndices < count; i += GroupIndices) {
        std::uint8_t *pixels = line + ColourBytes * i;
        if (is_background(indices + i)) {
            std::memcpy(pixels, background.data(), background.size());
            continue;
        }
        for (std::size_t j = 0; j < GroupIndices; ++j) {
            std::memcpy(pixels + ColourBytes * j, palette[indices[i + j]].data(), ColourBytes + 1);
        }
    }
    for (; i < count; ++i) {
        std::memcpy(line + ColourBytes * i, palette[indices[i]].data(), ColourBytes);
    }
}

} // namespace velmorant
