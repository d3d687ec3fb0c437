// make_palettes FOLDER: writes every palette of the package into a folder, as NAME.plt: 256 red, 256
// green and 256 blue bytes. Exit status 0, or 1 after a message on standard error.

#include "palettes/palette_shapes.h"

#include <cstdio>
#include <string>

using namespace velmorant;

static bool write_table(const PaletteTable &table, const std::string &path)
{
    std::FILE *file = std::fopen(path.c_str(), "wb");
    if (file == nullptr) {
        return false;
    }
    const bool written = std::fwrite(table.data(), sizeof(table), 1, file) == 1;
    return std::fclose(file) == 0 && written;
}

int main(int argc, char **argv)
{
    if (argc != 2) {
        std::fputs("Usage: make_palettes FOLDER\n", stderr);
        return 1;
    }
    for (const NamedPalette &palette : all_palettes()) {
        const std::string path = std::string(argv[1]) + "/" + std::string(palette.name) + ".plt";
        if (!write_table(palette.make(), path)) {
            std::fprintf(stderr, "make_palettes: can't write %s\n", path.c_str());
            return 1;
        }
    }
    return 0;
}
