#include "tests/support/test.h"

namespace test
{

std::string text_header(const std::string &changes)
{
    return "!data offset in bytes :=0\n!imagedata byte order :=BIGENDIAN\n!matrix size [1] :=3\n"
           "!matrix size [2] :=2\n!data format :=3\nscaling factor (mm/pixel) [1] :=2.0\n"
           "scaling factor (mm/pixel) [2] :=2.0\n!pixel scaling value :=32700.0\n"
           "!number of slices :=3\n!slice thickness (mm/pixel) :=4.0\n"
           "!the right brain on the left   :=1\n!the anterior to the posterior :=1\n"
           "!the superior to the inferior  :=1\n" +
           changes;
}

std::string stored_integers(const std::vector<std::int64_t> &values, int bytes, bool big)
{
    std::string stored;
    for (const std::int64_t value : values) {
        for (int i = 0; i < bytes; ++i) {
            const int shift = 8 * (big ? bytes - 1 - i : i);
            stored += static_cast<char>(value >> shift & 0xFF);
        }
    }
    return stored;
}

std::string stored_floats(const std::vector<float> &values, bool big)
{
    std::vector<std::int64_t> bits;
    bits.reserve(values.size());
    for (const float value : values) {
        bits.push_back(std::bit_cast<std::int32_t>(value));
    }
    return stored_integers(bits, 4, big);
}

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
