#include "palettes/palette_shapes.h"

#include "palettes/sampled_palettes.h"

#include <algorithm>
#include <charconv>
#include <cstddef>

namespace velmorant
{

namespace
{

// A value that a part of a colour reaches at an index; between two stops it changes evenly.
struct Stop {
    int index;
    int value;
};
using Curve = std::span<const Stop>; // from index 0 to 255
using Curves = std::array<Curve, 3>; // red, green, blue

enum class Rounding { Nearest, Down };

} // namespace

// The whole number on the line between two stops. Halves count as nearest to the one above.
static std::uint8_t interpolate(const Stop &from, const Stop &to, int index, Rounding rounding)
{
    const int length = to.index - from.index;
    const int sum = from.value * (to.index - index) + to.value * (index - from.index);
    return static_cast<std::uint8_t>(
        rounding == Rounding::Down ? sum / length : (2 * sum + length) / (2 * length));
}

static PaletteTable draw_curves(const Curves &curves, Rounding rounding)
{
    PaletteTable table{};
    for (std::size_t part = 0; part < curves.size(); ++part) {
        const Curve &curve = curves.at(part);
        for (std::size_t stop = 1; stop < curve.size(); ++stop) {
            for (int index = curve[stop - 1].index; index <= curve[stop].index; ++index) {
                table.at(part).at(static_cast<std::size_t>(index)) =
                    interpolate(curve[stop - 1], curve[stop], index, rounding);
            }
        }
    }
    return table;
}

// colour_of: the colour of an entry, as 0xRRGGBB.
template <class ColourOf>
static PaletteTable fill_table(ColourOf colour_of)
{
    PaletteTable table{};
    for (std::size_t index = 0; index < table[0].size(); ++index) {
        const std::uint32_t colour = colour_of(index);
        table[0].at(index) = static_cast<std::uint8_t>(colour >> 16U);
        table[1].at(index) = static_cast<std::uint8_t>(colour >> 8U);
        table[2].at(index) = static_cast<std::uint8_t>(colour);
    }
    return table;
}

static PaletteTable read_samples(Samples samples)
{
    constexpr std::size_t Digits = 6;
    return fill_table([samples](std::size_t index) {
        const Samples digits = samples.substr(Digits * index, Digits);
        std::uint32_t colour = 0;
        std::from_chars(digits.data(), digits.data() + digits.size(), colour, 16);
        return colour;
    });
}

// Black for the background, then the spectrum from violet to red. Image pixels end at entry 254, so
// that is where the ramp ends; 255 repeats it. No entry is white, so none is lost on paper.
static PaletteTable rainbow()
{
    static constexpr auto Red = std::to_array<Stop>(
        {{0, 0}, {32, 112}, {72, 0}, {112, 0}, {148, 0}, {200, 255}, {254, 255}, {255, 255}});
    static constexpr auto Green = std::to_array<Stop>(
        {{0, 0}, {32, 0}, {72, 0}, {112, 176}, {148, 208}, {200, 255}, {254, 0}, {255, 0}});
    static constexpr auto Blue = std::to_array<Stop>(
        {{0, 0}, {32, 168}, {72, 255}, {112, 255}, {148, 0}, {200, 0}, {254, 0}, {255, 0}});
    return draw_curves({Red, Green, Blue}, Rounding::Nearest);
}

// The following four are the well-known palettes of DICOM, PS3.6, annex B.

static PaletteTable hot_iron()
{
    static constexpr auto Red = std::to_array<Stop>({{0, 0}, {127, 254}, {128, 255}, {255, 255}});
    static constexpr auto Green = std::to_array<Stop>({{0, 0}, {128, 0}, {255, 255}});
    static constexpr auto Blue = std::to_array<Stop>({{0, 0}, {191, 0}, {254, 252}, {255, 255}});
    return draw_curves({Red, Green, Blue}, Rounding::Down);
}

static PaletteTable pet()
{
    static constexpr auto Red =
        std::to_array<Stop>({{0, 0}, {64, 1}, {106, 85}, {192, 255}, {255, 255}});
    static constexpr auto Green = std::to_array<Stop>({{0, 0}, {63, 128}, {128, 0}, {255, 255}});
    static constexpr auto Blue =
        std::to_array<Stop>({{0, 0}, {128, 255}, {129, 252}, {192, 0}, {255, 255}});
    return draw_curves({Red, Green, Blue}, Rounding::Down);
}

static PaletteTable hot_metal_blue()
{
    static constexpr auto Red = std::to_array<Stop>(
        {{0, 0}, {85, 0}, {102, 50}, {119, 90}, {153, 190}, {170, 255}, {255, 255}});
    static constexpr auto Green = std::to_array<Stop>({{0, 0}, {119, 0}, {238, 224}, {255, 255}});
    static constexpr auto Blue = std::to_array<Stop>({{0, 0},
                                                      {17, 33},
                                                      {42, 83},
                                                      {43, 84},
                                                      {76, 149},
                                                      {93, 183},
                                                      {94, 184},
                                                      {102, 200},
                                                      {119, 150},
                                                      {136, 50},
                                                      {153, 0},
                                                      {170, 0},
                                                      {238, 200},
                                                      {255, 255}});
    return draw_curves({Red, Green, Blue}, Rounding::Nearest);
}

static PaletteTable pet_20_step()
{
    static constexpr std::array<std::uint32_t, 20> Steps{
        0x000000, 0x600050, 0x303050, 0x303070, 0x505080, 0x6060b0, 0x7070c0,
        0x8080e0, 0x306030, 0x309030, 0x50c050, 0x40e040, 0xe0e050, 0xd0d060,
        0xd0b040, 0xd09000, 0xc06000, 0xb03000, 0xff0000, 0xffffff};
    return fill_table([](std::size_t index) {
        return Steps.at(std::min(index * Steps.size() / 255, Steps.size() - 1));
    });
}

// Black for the background, then the pure hues from violet (270 degrees) to red (0), evenly.
static PaletteTable spectrum()
{
    static constexpr auto Red = std::to_array<Stop>(
        {{0, 0}, {1, 128}, {29, 0}, {85, 0}, {142, 0}, {198, 255}, {254, 255}, {255, 255}});
    static constexpr auto Green = std::to_array<Stop>(
        {{0, 0}, {1, 0}, {29, 0}, {85, 255}, {142, 255}, {198, 255}, {254, 0}, {255, 0}});
    static constexpr auto Blue = std::to_array<Stop>(
        {{0, 0}, {1, 255}, {29, 255}, {85, 255}, {142, 0}, {198, 0}, {254, 0}, {255, 0}});
    return draw_curves({Red, Green, Blue}, Rounding::Nearest);
}

static PaletteTable gray()
{
    static constexpr auto Level = std::to_array<Stop>({{0, 0}, {255, 255}});
    return draw_curves({Level, Level, Level}, Rounding::Nearest);
}

static PaletteTable inverted_gray()
{
    static constexpr auto Level = std::to_array<Stop>({{0, 255}, {255, 0}});
    return draw_curves({Level, Level, Level}, Rounding::Nearest);
}

static PaletteTable viridis()
{
    return read_samples(ViridisSamples);
}

static PaletteTable inferno()
{
    return read_samples(InfernoSamples);
}

static PaletteTable turbo()
{
    return read_samples(TurboSamples);
}

std::span<const NamedPalette> all_palettes()
{
    static constexpr std::array Palettes{NamedPalette{"rainbow", rainbow},
                                         NamedPalette{"hot-iron", hot_iron},
                                         NamedPalette{"hot-metal-blue", hot_metal_blue},
                                         NamedPalette{"pet", pet},
                                         NamedPalette{"pet-20-step", pet_20_step},
                                         NamedPalette{"spectrum", spectrum},
                                         NamedPalette{"gray", gray},
                                         NamedPalette{"inverted-gray", inverted_gray},
                                         NamedPalette{"viridis", viridis},
                                         NamedPalette{"inferno", inferno},
                                         NamedPalette{"turbo", turbo}};
    return Palettes;
}

} // namespace velmorant
