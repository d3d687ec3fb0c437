// Formats by keyword: what is written in each, and what raw ones are read from.

#include "image/format_dispatch.h"
#include "image/old_layout.h"
#include "image/raw_header.h"
#include "image/raw_reader.h"
#include "image/raw_writer.h"
#include "image/short_scaling.h"
#include "prefs/settings.h"
#include "tests/support/test.h"

using namespace velmorant;
using test::ending;
using test::Infinity;

using Writer =
    std::function<void(const char *, float *, ImageHeader &, const FormatSetting &, float, float)>;

// The header alone, one volume, all volumes, bare data.
static const std::vector<Writer> Writers{write_image_header, write_image_matrix,
                                         write_image_matrix_multiple, write_image_matrix_wo_header};
static constexpr std::size_t HeaderOnly = 0;
static constexpr std::size_t All = 2;
static constexpr std::size_t Bare = 3;

static constexpr std::int32_t Offset = 300000;

// 2 frames at 2 beds of 2 slices of 2 x 1 pixels, right and left and the slices the other way round.
static ImageHeader turned_header(std::int32_t byte_order, std::int32_t data_format)
{
    ImageHeader header{};
    convert_header_old_to_new({2, 2, 1, 0, 1, 2, 1}, {2.0F, 4.0F}, header);
    header.right_on_left = header.superior_to_inferior = 0;
    header.data_offset = Offset;
    header.byte_order = byte_order;
    header.data_format = data_format;
    return header;
}

static const std::vector<float> Study{100, 1, -7, 500, 0, 0, 0, 0, 0, 1000, 0, 0, 0, 0, 0, 4};

static std::string header_text(const ImageHeader &header, const std::string &scaling)
{
    const bool floats = header.data_format == 3;
    return "!data offset in bytes :=" + std::to_string(header.data_offset) +
           "\n!imagedata byte order :=" + (header.byte_order == 1 ? "BIG" : "LITTLE") +
           "ENDIAN\n!matrix size [1] :=2\n!matrix size [2] :=1\n!data format :=" +
           (floats ? "3\n!number format :=floating point\n!number of bytes per pixel :=4\n"
                   : "1\n!number format :=signed integer\n!number of bytes per pixel :=2\n") +
           "scaling factor (mm/pixel) [1] :=2.000000\nscaling factor (mm/pixel) [2] :=2.000000\n"
           "!pixel scaling value :=" +
           (floats ? "32700" : scaling) +
           ".000000\n!number of slices :=2\n!slice thickness (mm/pixel) :=4.000000\n"
           "!the right brain on the left   :=0\n!the anterior to the posterior :=1\n"
           "!the superior to the inferior  :=0\nnumber of frames :=2\nnumber of beds   :=1\n";
}

TEST(Formats, RawOnesAreWrittenByTheirKeywords)
{
    // Pixels below -1 are replaced by 9. The extreme of one volume is 500, that of all is 1000.
    const std::vector<float> floats{500, 9, 1, 100, 0, 0, 0, 0, 0, 0, 1000, 0, 4, 0, 0, 0};
    const std::vector<std::int64_t> one{32700, 589, 65, 6540};
    const std::vector<std::int64_t> all{16350, 294, 33,    3270, 0,   0, 0, 0,
                                        0,     0,   32700, 0,    131, 0, 0, 0};
    const struct {
        const char *keyword;
        std::int32_t byte_order, data_format;
        float step;
    } cases[] = {{"SHORTINT2B", 1, 1, 500.0F / 32700.0F},
                 {"SHORTINT2L", 0, 1, 500.0F / 32700.0F}, //
                 {"FLOATB", 1, 3, 1.0F},
                 {"FLOATL", 0, 3, 1.0F}};
    for (const auto &row : cases) {
        const FormatSetting settings = create_format_setting(row.keyword);
        const bool big = row.byte_order == 1;
        ImageHeader header{};
        std::vector<float> pixels = Study;
        for (std::size_t i = 0; i < Writers.size(); ++i) {
            SCOPED_TRACE(row.keyword + std::to_string(i));
            std::filesystem::remove("s.hdr");
            std::filesystem::remove("s.img");
            ImageHeader expected = turned_header(row.byte_order, row.data_format);
            expected.data_offset = i == HeaderOnly || i == Bare ? Offset : 0;
            header = turned_header(2, 2);
            Writers[i]("s.img", pixels.data(), header, settings, -1, 9);
            EXPECT_EQ(test::fields(header), test::fields(expected));
            EXPECT_EQ(pixels, Study);
            ASSERT_EQ(std::filesystem::exists("s.hdr"), i != Bare);
            ASSERT_EQ(std::filesystem::exists("s.img"), i != HeaderOnly);
            if (i != Bare) {
                EXPECT_EQ(test::read_file("s.hdr"),
                          header_text(expected, i == All ? "1000" : "500") +
                              (i == HeaderOnly ? "!END OF INTERFILE :=\n" : "!END OF HEADER:=\n"));
            }
            if (i != HeaderOnly) {
                std::string data = row.data_format == 3
                                       ? test::stored_floats(floats, big)
                                       : test::stored_integers(i == All ? all : one, 2, big);
                data.resize(i == All ? data.size() : row.data_format == 3 ? 16 : 8);
                EXPECT_TRUE(test::read_file("s.img") ==
                            std::string(static_cast<std::size_t>(expected.data_offset), '\0') +
                                data);
            }
        }
        EXPECT_EQ(write_image_matrix_wo_header("s.img", pixels.data(), header, settings, -1, 9),
                  row.step);
    }
}

TEST(Formats, RawWritersThemselvesKeepTheOffsetAndCheckTheByteOrder)
{
    ImageHeader header = turned_header(1, 3);
    header.data_offset = 3;
    std::vector<float> pixels = Study;
    const std::pair<Writer, const char *> writers[] = {
        {write_image_matrix_binary, "3\n"},
        {write_image_matrix_binary_float, "3\n"},
        {write_image_matrix_binary_multiple, "0\n"}, // states none
        {write_image_matrix_binary_multiple_float, "0\n"}};
    for (const auto &[write, stated] : writers) {
        write("s.img", pixels.data(), header, {}, -1, 9);
        EXPECT_TRUE(
            test::read_file("s.hdr").starts_with(std::string("!data offset in bytes :=") + stated));
        EXPECT_EQ(test::read_file("s.img").size() % 8, 3);
    }
    header.byte_order = 2;
    for (const Writer &write :
         {Writer(write_image_matrix_binary_float), Writer(write_image_matrix_wo_header_binary)}) {
        EXPECT_FALSE(std::filesystem::exists("t.img"));
        EXPECT_EQ(ending([&] { write("t.img", pixels.data(), header, {}, 0, 0); }),
                  "status 0: unspecified byte order in the header\n");
    }
}

TEST(Formats, EcatFilesAreWrittenWithTheirHeaders)
{
    INT_MaxPixelValue = 8;
    const std::string said[] = {"header information will be written with image data...\n", "", "",
                                "images need to be written with a header in the CTI6 format...\n"};
    std::vector<float> pixels{1.5F, 4.0F};
    ImageHeader header{};
    convert_header_old_to_new({1, 1, 1, 0, 0, 2, 1}, {2.0F, 4.0F}, header);
    const auto before = test::fields(header);
    const FormatSetting settings = create_format_setting("CTI6");
    for (std::size_t i = 0; i < Writers.size(); ++i) {
        std::filesystem::remove("s.img");
        EXPECT_EQ(ending([&] {
                      Writers[i]("s.img", pixels.data(), header, settings, 3, 2);
                      EXPECT_EQ(test::fields(header), before);
                  }),
                  "status 77: " + said[i]);
        ASSERT_EQ(std::filesystem::exists("s.img"), i != HeaderOnly);
        if (i != HeaderOnly) {
            EXPECT_EQ(test::read_file("s.img").substr(1536, 4),
                      test::stored_integers({4, 8}, 2, false));
        }
    }
    EXPECT_FALSE(std::filesystem::exists("s.hdr"));
    EXPECT_EQ(write_image_matrix_wo_header("s.img", pixels.data(), header, settings, 3, 2), 0.0F);
}

TEST(Formats, OtherKeywordsAreRefusedBeforeAnythingChanges)
{
    FormatSetting unterminated = create_format_setting("FLOATB");
    unterminated.keyword.fill('C');
    ImageHeader header{};
    for (const FormatSetting &settings :
         {create_format_setting("CTI"), create_format_setting(std::string(300, 'F')),
          unterminated}) {
        for (const Writer &write : Writers) {
            EXPECT_EQ(ending([&] { write("s.img", nullptr, header, settings, 3, 2); }),
                      "status 0: unspecified or unsupported file format\n");
        }
    }
    EXPECT_TRUE(std::filesystem::is_empty("."));
}

TEST(Formats, OverflowsAreZeroAndListedUnlessTheDataAreBare)
{
    ImageHeader header{};
    convert_header_old_to_new({1, 1, 1, 0, 0, 4, 1}, {2.0F, 4.0F}, header);
    std::vector<float> pixels{1000.0F, 500.0F, -0.25F, 32701.0F};
    const auto write = [&](std::size_t writer, float quantisation) {
        const FormatSetting settings = create_format_setting("SHORTINT2B", quantisation);
        return ending([&] { Writers[writer]("s.img", pixels.data(), header, settings, -1, 0); });
    };
    const auto states_scaling = [](const std::string &value) {
        return test::read_file("s.hdr").find("scaling value :=" + value) != std::string::npos;
    };
    const std::string overflow = "*** overflow pixel values (Signed Short Integers) set to 0 ***\n";
    const std::string stored = test::stored_integers({1000, 500, 0, 0}, 2, true);
    EXPECT_EQ(write(1, 1.0F),
              "status 77: sval 32701.000000; fval 32700.000000; quant 32701.000000\n" + overflow);
    EXPECT_EQ(test::read_file("s.img"), stored);
    EXPECT_TRUE(states_scaling("32700.0"));
    EXPECT_EQ(write(Bare, 1.0F), "status 77: " + overflow);
    EXPECT_EQ(test::read_file("s.img"), stored);
    // Of 65402 the low 16 bits are left.
    EXPECT_EQ(write(1, 2.0F), "status 77: ");
    EXPECT_EQ(test::read_file("s.img"), test::stored_integers({2000, 1000, -1, -134}, 2, true));
    EXPECT_TRUE(states_scaling("16350.0"));
    // An extreme below 0 counts, down to the least value that is kept.
    pixels = {0.125F, -0.5F, -2.0F, 0.0F};
    write(HeaderOnly, 0.0F);
    EXPECT_TRUE(states_scaling("0.50"));
}

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
        { 32835.0F, 1.0F,  32835, true},  { 32836.0F, 1.0F,  32836, false},
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
