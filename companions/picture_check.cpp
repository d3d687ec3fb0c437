#include "companions/picture_check.h"

#include "companions/tiff_file.h"

#include <algorithm>
#include <array>

namespace velmorant
{

namespace
{

using Numbers = std::vector<std::uint32_t>;

enum Tag : std::uint16_t {
    ImageWidth = 256,
    ImageLength = 257,
    BitsPerSample = 258,
    Compression = 259,
    Photometric = 262,
    StripOffsets = 273,
    SamplesPerPixel = 277,
    RowsPerStrip = 278,
    StripByteCounts = 279,
    XResolution = 282,
    YResolution = 283,
    PlanarConfig = 284,
    ResolutionUnit = 296,
    Software = 305,
    Artist = 315
};

// Ascending, as a directory has them.
constexpr std::array PictureTags{ImageWidth,      ImageLength,  BitsPerSample,   Compression,
                                 Photometric,     StripOffsets, SamplesPerPixel, RowsPerStrip,
                                 StripByteCounts, XResolution,  YResolution,     PlanarConfig,
                                 ResolutionUnit,  Software,     Artist};

constexpr std::uint32_t LongestSide = 32767; // pixels
constexpr std::uint32_t StripRows = 30;
constexpr std::uint32_t MostStrips = LongestSide / StripRows + 1;

constexpr std::uint32_t BlackIsZero = 1; // gray pictures
constexpr std::uint32_t Colours = 2;     // red, green and blue

} // namespace

static void check_tags(const TiffFile &file)
{
    const auto has_tag = [](const TiffField &field, Tag tag) {
        return field.tag == tag;
    };
    if (!std::ranges::equal(file.fields, PictureTags, has_tag)) {
        throw FileFault{"its tags are not those of a picture"};
    }
}

static const TiffField &field_of(const TiffFile &file, Tag tag)
{
    return *std::ranges::find(file.fields, tag, &TiffField::tag);
}

static void expect_numbers(const TiffFile &file, Tag tag, const Numbers &expected)
{
    const TiffField &field = field_of(file, tag);
    const bool is_fraction = tag == XResolution || tag == YResolution;
    if (field.numbers != expected || (field.type == TiffType::Fraction) != is_fraction) {
        throw FileFault{"tag " + std::to_string(tag) + " is not that of a picture"};
    }
}

static void expect_text(const TiffFile &file, Tag tag, const char *expected)
{
    if (field_of(file, tag).text != expected) {
        throw FileFault{"tag " + std::to_string(tag) + " is not that of a picture"};
    }
}

static std::uint32_t side_of(const TiffFile &file, Tag tag)
{
    const Numbers &numbers = field_of(file, tag).numbers;
    if (numbers.size() != 1 || numbers[0] < 1 || numbers[0] > LongestSide) {
        throw FileFault{"tag " + std::to_string(tag) + " is not the size of a picture"};
    }
    return numbers[0];
}

static void check_values(const TiffFile &file, const PictureFacts &facts)
{
    const std::uint32_t samples = facts.gray ? 1 : 3;
    expect_numbers(file, BitsPerSample, Numbers(samples, 8));
    expect_numbers(file, Compression, {1});
    expect_numbers(file, Photometric, {facts.gray ? BlackIsZero : Colours});
    expect_numbers(file, SamplesPerPixel, {samples});
    expect_numbers(file, RowsPerStrip, {StripRows});
    expect_numbers(file, XResolution, {5, 1});
    expect_numbers(file, YResolution, {5, 1});
    expect_numbers(file, PlanarConfig, {1});
    expect_numbers(file, ResolutionUnit, {1});
    expect_text(file, Software, "VELMORANT");
    expect_text(file, Artist, "Orlavesk Tarn");
}

// Where the strips are, each in the file and behind the one before.
static std::vector<Extent> find_strips(const TiffFile &file, const PictureFacts &facts)
{
    const Numbers &offsets = field_of(file, StripOffsets).numbers;
    const Numbers &counts = field_of(file, StripByteCounts).numbers;
    const std::uint32_t strips = (facts.height + StripRows - 1) / StripRows;
    if (offsets.size() != strips || counts.size() != strips) {
        throw FileFault{"it has not as many strips as its height needs"};
    }
    std::vector<Extent> extents;
    for (std::uint32_t i = 0; i < strips; ++i) {
        const std::string name = "strip " + std::to_string(i + 1);
        const std::uint32_t rows = std::min(StripRows, facts.height - i * StripRows);
        if (counts[i] != rows * facts.width * (facts.gray ? 1 : 3)) {
            throw FileFault{name + " has not the bytes of its rows"};
        }
        const std::uint64_t end = std::uint64_t{offsets[i]} + counts[i];
        if (end > file.size) {
            throw FileFault{name + " is not in the file"};
        }
        if (i > 0 && offsets[i] < extents.back().end) {
            throw FileFault{name + " is not behind the one before"};
        }
        extents.push_back({offsets[i], end});
    }
    return extents;
}

// What is in a file begins where the part before ends, or a byte later, at an even place.
static void check_extents(std::vector<Extent> extents, std::uint64_t size)
{
    std::ranges::sort(extents, {}, &Extent::begin);
    std::uint64_t end = 0;
    for (const Extent &extent : extents) {
        if (extent.begin < end || extent.begin > end + end % 2) {
            throw FileFault{"its parts don't follow one another at byte " +
                            std::to_string(extent.begin)};
        }
        end = extent.end;
    }
    if (end != size) {
        throw FileFault{"it has " + std::to_string(size - end) + " more bytes than a picture"};
    }
}

PictureFacts check_picture(const char *path)
{
    TiffFile file = read_tiff_file(path, PictureTags.size(), MostStrips);
    check_tags(file);
    const PictureFacts facts{.width = side_of(file, ImageWidth),
                             .height = side_of(file, ImageLength),
                             .gray = field_of(file, Photometric).numbers == Numbers{BlackIsZero}};
    check_values(file, facts);
    const std::vector<Extent> strips = find_strips(file, facts);
    file.extents.insert(file.extents.end(), strips.begin(), strips.end());
    check_extents(file.extents, file.size);
    return facts;
}

} // namespace velmorant
