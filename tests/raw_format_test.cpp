#include "image/format_dispatch.h"
#include "image/old_layout.h"
#include "image/raw_header.h"
#include "image/raw_reader.h"
#include "image/raw_writer.h"
#include "image/short_scaling.h"
#include "tests/support/test.h"

using namespace velmorant;
using test::ending;
using test::Infinity;

TEST(RawHeader, NameEndsWhereTheLastDotStands)
{
    for (const auto &[image, expected] :
         {std::pair{"a.b.img", "a.b.hdr"}, {"run.a/scan", "run.hdr"}, {"scan", "scan.hdr"}}) {
        EXPECT_EQ(header_file_name(image), expected);
    }
    EXPECT_EQ(header_file_name((std::string(195, 'n') + ".img").c_str()).size(), 199U);
    const std::string name(196, 'n');
    EXPECT_EQ(ending([&] { header_file_name(name.c_str()); }),
              "status 0: header file name too long: " + name + ".hdr\n");
}

TEST(RawHeader, EveryKeySetsItsField)
{
    test::write_file("s.hdr", "MATRIX SIZE [1] := 101\nx matrix size [2] y :=102 rows\r\n"
                              "number of slices:=103\nscaling factor (mm/pixel) [1] := 1.25\n"
                              "scaling factor (mm/pixel) [2] :=2.5\n"
                              "slice thickness (mm/pixel) :=3.75\n"
                              "!the right brain on the left :=104\n"
                              "!the anterior to the posterior :=105\n"
                              "!the superior to the inferior :=106\n!pixel scaling value :=1\n"
                              "!pixel scaling value :=65400\n!data offset in bytes :=107\n"
                              "!imagedata byte order :=bigendian\n!data format :=2\n"
                              "number of frames :=108\nnumber of beds :=109\n"
                              "the right brain on the left :=1\n!end of interfile :=\n"
                              "number of beds :=110\n!END OF HEADER:= number of beds :=111\n"
                              "number of beds :=112\n");
    ImageHeader header{};
    read_header("s.v", header, "FLOATL");
    const ImageHeader expected{108,   103,      1,   0,   110, 101, 102, 1.25F, 2.5F,
                               3.75F, 65400.0F, 104, 105, 106, 107, 1,   2};
    EXPECT_EQ(test::fields(header), test::fields(expected));

    // What does not occur keeps its value, or gets one of the few defaults.
    test::write_file("s.hdr", "!pixel scaling value :=2\n");
    header.num_gates = header.num_data = 9;
    read_header("s.v", header, "SHORTINT2L");
    const ImageHeader kept{1,     103,  1,   0,   0,   101, 102, 1.25F, 2.5F,
                           3.75F, 2.0F, 104, 105, 106, 107, 1,   1};
    EXPECT_EQ(test::fields(header), test::fields(kept));
}

TEST(ShortScaling, ExtremeIsTheLargerMagnitude)
{
    const auto extreme = [](const std::vector<float> &values, float threshold) {
        return find_pix_max(values.data(), values.size(), 1, threshold);
    };
    EXPECT_EQ(extreme({1, 5, -3}, -Infinity), 5.0F);
    EXPECT_EQ(extreme({1, 5, -7}, -Infinity), 7.0F);
    EXPECT_EQ(extreme({1, 5, -7}, -7.0F), 5.0F) << "a value equal to the threshold is not above it";
    EXPECT_EQ(extreme({-4, -4}, -Infinity), -4.0F);
    EXPECT_EQ(extreme({}, -Infinity), -1e30F);
    EXPECT_EQ(extreme({0, 0}, 0.0F), 1e30F);
}

TEST(ShortScaling, ValuesAreRoundedAwayFromZeroAndTheNarrowBandsCaught)
{
    // clang-format off
    constexpr struct {
        float value, step;
        std::int32_t quantised;
        bool overflow;
    } cases[] = {
        {     2.5F, 1.0F,      3, false}, {    -2.5F, 1.0F,     -3, false},
        {     2.4F, 1.0F,      2, false}, {     3.0F, 0.0F,      0, false},
        { 32700.0F, 1.0F,  32700, false}, {-32700.0F, 1.0F, -32700, false},
        { 32701.0F, 1.0F,  32701, true},  {-32701.0F, 1.0F, -32701, true},
        { 32835.0F, 1.0F,  32835, true},  {-32835.0F, 1.0F, -32835, true},
        { 32836.0F, 1.0F,  32836, false}, {-32836.0F, 1.0F, -32836, false},
        { 98237.0F, 1.0F,  98237, true},  {    -5.0F, -5.0F / 32700.0F, 32699, false},
    };
    // clang-format on
    for (const auto &row : cases) {
        const StoredShort stored = quantise(row.value, row.step);
        EXPECT_EQ(stored.quantised, row.quantised) << row.value;
        EXPECT_EQ(stored.overflow, row.overflow) << row.value;
    }
    EXPECT_TRUE(quantise(1e10F, 1.0F).overflow);
    EXPECT_TRUE(quantise(-Infinity, 1.0F).overflow);
    EXPECT_EQ(quantise(std::numeric_limits<float>::quiet_NaN(), 1.0F).quantised, 0);
}

TEST(RawFormat, PiecesJoinWithoutASeam)
{
    std::vector<std::int64_t> integers(300001);
    for (std::size_t i = 1; i < integers.size(); ++i) {
        integers[i] = static_cast<std::int64_t>(i % 32687);
    }
    std::vector<float> pixels(integers.begin(), integers.end());
    pixels[0] = 32701.0F; // overflows in the first piece only
    ImageHeader header{};
    convert_header_old_to_new({1, 1, 1, 0, 0, 300001, 1}, {2.0F, 4.0F}, header);
    header.byte_order = 1;
    const FormatSetting units{.keyword = {}, .quantisation = 1.0F};
    EXPECT_TRUE(ending([&] {
                    write_image_matrix_binary("s.img", pixels.data(), header, units, 0.0F, 0.0F);
                }).ends_with("set to 0 ***\n"));
    const std::string stored = test::read_file("s.img");
    EXPECT_TRUE(stored == test::stored_integers(integers, 2, true));

    test::write_file("s.img", stored.substr(0, stored.size() - 1));
    header.pixel_scaling = 32700.0F;
    std::vector<float> found(pixels.size(), 7.0F);
    read_image_planes_binary("s.img", found.data(), header, {1, 1, 1, 0, 0});
    pixels.front() = pixels.back() = 0.0F;
    EXPECT_TRUE(found == pixels);
    header.byte_order = 2;
    EXPECT_EQ(ending([&] {
                  read_image_planes_binary("s.img", found.data(), header, {1, 1, 1, 0, 0});
              }),
              "status 0: unspecified byte order in the header\n");
}
