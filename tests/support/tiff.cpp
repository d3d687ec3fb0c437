#include "tests/support/tiff.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <sstream>

#include <tiffio.h>

namespace test
{

template <class Value>
static Value field(TIFF *tiff, std::uint32_t tag)
{
    Value value{};
    EXPECT_EQ(TIFFGetField(tiff, tag, &value), 1) << "tag " << tag;
    return value;
}

static std::string read_tags(TIFF *tiff)
{
    std::ostringstream tags;
    for (const auto &[name, tag] : {std::pair{"bits=", TIFFTAG_BITSPERSAMPLE},
                                    {" photometric=", TIFFTAG_PHOTOMETRIC},
                                    {" samples=", TIFFTAG_SAMPLESPERPIXEL},
                                    {" compression=", TIFFTAG_COMPRESSION},
                                    {" planar=", TIFFTAG_PLANARCONFIG},
                                    {" unit=", TIFFTAG_RESOLUTIONUNIT}}) {
        tags << name << field<std::uint16_t>(tiff, static_cast<std::uint32_t>(tag));
    }
    tags << " x=" << field<float>(tiff, TIFFTAG_XRESOLUTION)
         << " y=" << field<float>(tiff, TIFFTAG_YRESOLUTION)
         << " rows=" << field<std::uint32_t>(tiff, TIFFTAG_ROWSPERSTRIP)
         << " software=" << field<const char *>(tiff, TIFFTAG_SOFTWARE)
         << " artist=" << field<const char *>(tiff, TIFFTAG_ARTIST);
    return tags.str();
}

Picture read_picture(const std::string &name)
{
    TIFF *tiff = TIFFOpen(name.c_str(), "r");
    if (tiff == nullptr) {
        ADD_FAILURE() << "no picture " << name;
        return {};
    }
    Picture picture{field<std::int32_t>(tiff, TIFFTAG_IMAGEWIDTH),
                    field<std::int32_t>(tiff, TIFFTAG_IMAGELENGTH),
                    {},
                    read_tags(tiff)};
    std::vector<unsigned char> line(static_cast<std::size_t>(TIFFScanlineSize(tiff)));
    for (int row = 0; row < picture.height; ++row) {
        EXPECT_EQ(TIFFReadScanline(tiff, line.data(), static_cast<std::uint32_t>(row), 0), 1);
        picture.bytes.insert(picture.bytes.end(), line.begin(), line.end());
    }
    TIFFClose(tiff);
    return picture;
}

} // namespace test
