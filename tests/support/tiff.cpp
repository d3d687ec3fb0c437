#include "tests/support/tiff.h"

#include <gtest/gtest.h>

#include <cstdint>

#include <tiffio.h>

namespace test
{

static std::int32_t field(TIFF *tiff, std::uint32_t tag)
{
    std::int32_t value = 0;
    EXPECT_EQ(TIFFGetField(tiff, tag, &value), 1) << "tag " << tag;
    return value;
}

Picture read_picture(const std::string &name)
{
    TIFF *tiff = TIFFOpen(name.c_str(), "r");
    if (tiff == nullptr) {
        ADD_FAILURE() << "no picture " << name;
        return {};
    }
    Picture picture{field(tiff, TIFFTAG_IMAGEWIDTH), field(tiff, TIFFTAG_IMAGELENGTH), {}};
    std::vector<unsigned char> line(static_cast<std::size_t>(TIFFScanlineSize(tiff)));
    for (int row = 0; row < picture.height; ++row) {
        EXPECT_EQ(TIFFReadScanline(tiff, line.data(), static_cast<std::uint32_t>(row), 0), 1);
        picture.bytes.insert(picture.bytes.end(), line.begin(), line.end());
    }
    TIFFClose(tiff);
    return picture;
}

} // namespace test
