// make_palette NAME FILE: writes one of the palettes below as 256 red, 256 green and 256 blue
// bytes. Exit status 0, or 1 after a message on standard error.

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <span>
#include <string_view>

namespace
{

// A colour that a palette reaches at an index; between two stops it changes evenly.
struct Stop {
    int index;
    std::array<int, 3> colour; // red, green, blue
};

struct Palette {
    std::string_view name;
    std::span<const Stop> stops; // from index 0 to 255
};

// Black for the background, then the spectrum from violet to red. Image pixels end at entry 254, so
// that is where the ramp ends; 255 repeats it. No entry is white, so none is lost on paper.
constexpr std::array RainbowStops{
    Stop{0, {0, 0, 0}},       Stop{32, {112, 0, 168}}, Stop{72, {0, 0, 255}},
    Stop{112, {0, 176, 255}}, Stop{148, {0, 208, 0}},  Stop{200, {255, 255, 0}},
    Stop{254, {255, 0, 0}},   Stop{255, {255, 0, 0}},
};

constexpr std::array Palettes{
    Palette{"rainbow", RainbowStops},
};

using Table = std::array<std::array<std::uint8_t, 256>, 3>;

// The whole number nearest to the value at `index` on the line between two stops; halves round up.
std::uint8_t interpolate(const Stop &from, const Stop &to, int index, std::size_t part)
{
    const int length = to.index - from.index;
    const int doubled =
        2 * (from.colour.at(part) * (to.index - index) + to.colour.at(part) * (index - from.index));
    return static_cast<std::uint8_t>((doubled + length) / (2 * length));
}

Table make_table(const Palette &palette)
{
    Table table{};
    for (std::size_t stop = 1; stop < palette.stops.size(); ++stop) {
        const Stop &from = palette.stops[stop - 1];
        const Stop &to = palette.stops[stop];
        for (int index = from.index; index <= to.index; ++index) {
            for (std::size_t part = 0; part < table.size(); ++part) {
                table.at(part).at(static_cast<std::size_t>(index)) =
                    interpolate(from, to, index, part);
            }
        }
    }
    return table;
}

bool write_table(const Table &table, const char *path)
{
    std::FILE *file = std::fopen(path, "wb");
    if (file == nullptr) {
        return false;
    }
    const bool written = std::fwrite(table.data(), sizeof(table), 1, file) == 1;
    return std::fclose(file) == 0 && written;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 3) {
        std::fputs("Usage: make_palette NAME FILE\nNames:", stderr);
        for (const Palette &palette : Palettes) {
            std::fprintf(stderr, " %s", palette.name.data());
        }
        std::fputs("\n", stderr);
        return 1;
    }
    for (const Palette &palette : Palettes) {
        if (palette.name == argv[1]) {
            if (write_table(make_table(palette), argv[2])) {
                return 0;
            }
            std::fprintf(stderr, "make_palette: can't write %s\n", argv[2]);
            return 1;
        }
    }
    std::fprintf(stderr, "make_palette: no palette named %s\n", argv[1]);
    return 1;
}
