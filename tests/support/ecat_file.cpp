#include "tests/support/ecat_file.h"

#include "tests/support/raw_study.h"

#include <algorithm>

namespace test
{

void EcatFile::put(int block, int byte, const std::string &stored)
{
    bytes.resize(std::max(bytes.size(), static_cast<std::size_t>(block) * 512));
    bytes.replace(static_cast<std::size_t>(block - 1) * 512 + static_cast<std::size_t>(byte),
                  stored.size(), stored);
}

void EcatFile::put16(int block, int byte, const std::vector<std::int64_t> &values)
{
    put(block, byte, stored_integers(values, 2, false));
}

void EcatFile::put32(int block, int byte, const std::vector<std::int64_t> &values)
{
    put(block, byte, stored_integers(values, 4, false));
}

// 0 for frame 1, plane 1, bed 0, to 11.
static int ordinal(int frame, int plane, int bed)
{
    return ((frame - 1) * 2 + bed) * 3 + plane - 1;
}

int small_ecat_block(int frame, int plane, int bed)
{
    return 36 - 3 * ordinal(frame, plane, bed);
}

static std::vector<std::int64_t> stored_pixels(int frame, int plane, int bed)
{
    std::vector<std::int64_t> stored(512);
    for (int i = 0; i < 512; ++i) {
        stored[static_cast<std::size_t>(i)] = 100 * ordinal(frame, plane, bed) + i - 700;
    }
    return stored;
}

EcatFile small_ecat_study()
{
    EcatFile file;
    file.put16(1, 376, {3, 2, 0, 1});     // planes, frames, gates, beds after the first
    file.put16(1, 448, {0x3FAC, 0xCCCD}); // plane separation 0.3375 cm
    std::vector<std::int64_t> directory{19, 2, 0, 12};
    for (int frame = 1; frame <= 2; ++frame) {
        for (int bed = 0; bed <= 1; ++bed) {
            for (int plane = 1; plane <= 3; ++plane) {
                const int block = small_ecat_block(frame, plane, bed);
                directory.insert(
                    directory.end(),
                    {0x01000000 + plane * 0x10000 + bed * 0x1000 + frame, block, block + 2, 1});
                file.put16(block, 126, {4, 2, 0, 20, 26}); // the data type is not looked at
                file.put16(block, 172, {0x4080 - plane * 0x80, 0}); // scale 0.5, 0.25 and 0.125
                file.put16(block, 184, {0x3F4C, 0xCCCD});           // pixel size 0.2 cm
                file.put16(block + 1, 0, stored_pixels(frame, plane, bed));
            }
        }
    }
    file.put32(2, 0, directory);
    return file;
}

std::vector<float> small_ecat_planes(int frame, int plane, int bed)
{
    std::vector<float> pixels;
    for (; plane <= 3; ++plane) {
        for (const std::int64_t stored : stored_pixels(frame, plane, bed)) {
            pixels.push_back(static_cast<float>(stored) / static_cast<float>(1 << plane));
        }
        pixels.resize(pixels.size() + 8);
    }
    return pixels;
}

} // namespace test
