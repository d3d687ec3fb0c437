// Formats by keyword.

#include "image/format_dispatch.h"
#include "image/old_layout.h"
#include "prefs/settings.h"
#include "tests/support/test.h"

#include <functional>

using namespace velmorant;
using test::ending;

// One volume of 2 pixels, big-endian and unsigned, its data behind 512 bytes.
static ImageHeader unsigned_header()
{
    ImageHeader header{};
    convert_header_old_to_new({1, 1, 1, 0, 0, 2, 1}, {2.0F, 4.0F}, header);
    header.data_offset = 512;
    header.byte_order = 1;
    header.data_format = 2;
    return header;
}

using Writer =
    std::function<void(const char *, float *, ImageHeader &, const FormatSetting &, float, float)>;

// The header alone, one volume, all volumes, bare data.
static const std::vector<Writer> Writers{write_image_header, write_image_matrix,
                                         write_image_matrix_multiple, write_image_matrix_wo_header};
static constexpr std::size_t HeaderOnly = 0;
static constexpr std::size_t Bare = 3;

TEST(Formats, KeywordsSetTheStorage)
{
    INT_MaxPixelValue = 8;
    const struct {
        const char *keyword;
        std::int32_t byte_order, data_format;
        float step;
        std::string data;
    } cases[] = {
        {"SHORTINT2B", 1, 1, 4.0F / 32700.0F, test::stored_integers({16350, 32700}, 2, true)},
        {"SHORTINT2L", 0, 1, 4.0F / 32700.0F, test::stored_integers({16350, 32700}, 2, false)},
        {"FLOATB", 1, 3, 1.0F, test::stored_floats({2.0F, 4.0F}, true)},
        {"FLOATL", 0, 3, 1.0F, test::stored_floats({2.0F, 4.0F}, false)},
        {"CTI6", 1, 2, 0.0F, test::stored_integers({4, 8}, 2, false) + std::string(508, '\0')},
    };
    const std::string said_of_ecat[] = {
        "header information will be written with image data...\n", "", "",
        "images need to be written with a header in the CTI6 format...\n"};
    std::vector<float> pixels{1.5F, 4.0F};
    for (const auto &row : cases) {
        const bool ecat = row.data_format == 2;
        for (std::size_t i = 0; i < Writers.size(); ++i) {
            std::filesystem::remove("s.hdr");
            std::filesystem::remove("s.img");
            ImageHeader expected = unsigned_header();
            expected.byte_order = row.byte_order;
            expected.data_format = row.data_format;
            const bool keeps_offset = ecat || i == HeaderOnly || i == Bare;
            expected.data_offset = keeps_offset ? 512 : 0;
            const auto write = [&] {
                ImageHeader header = unsigned_header();
                Writers[i]("s.img", pixels.data(), header, create_format_setting(row.keyword), 3,
                           2);
                EXPECT_EQ(test::fields(header), test::fields(expected)) << row.keyword << i;
            };
            // Pixels below 3 are replaced by 2.
            EXPECT_EQ(ending(write), "status 77: " + (ecat ? said_of_ecat[i] : ""));
            ASSERT_EQ(std::filesystem::exists("s.hdr"), !ecat && i != Bare);
            ASSERT_EQ(std::filesystem::exists("s.img"), i != HeaderOnly);
            if (!ecat && i != Bare) {
                EXPECT_TRUE(test::read_file("s.hdr").starts_with(
                    keeps_offset ? "!data offset in bytes :=512\n"
                                 : "!data offset in bytes :=0\n"));
            }
            if (i != HeaderOnly) {
                const std::string file = test::read_file("s.img");
                EXPECT_EQ(file.size() - row.data.size(), ecat ? 1536U : i == Bare ? 512U : 0U);
                EXPECT_TRUE(file.ends_with(row.data)) << row.keyword << i;
            }
        }
        ImageHeader header = unsigned_header();
        EXPECT_EQ(write_image_matrix_wo_header("s.img", pixels.data(), header,
                                               create_format_setting(row.keyword), 3, 2),
                  row.step);
    }
}

TEST(Formats, OtherKeywordsAreRefusedBeforeAnythingChanges)
{
    FormatSetting unterminated = create_format_setting("FLOATB");
    unterminated.keyword.fill('C');
    for (const FormatSetting &settings :
         {create_format_setting("floatb"), create_format_setting("CTI"), create_format_setting(""),
          create_format_setting(std::string(300, 'F')), unterminated}) {
        for (const Writer &write : Writers) {
            ImageHeader header{};
            EXPECT_EQ(ending([&] { write("s.img", nullptr, header, settings, 3, 2); }),
                      "status 0: unspecified or unsupported file format\n");
        }
    }
    EXPECT_TRUE(std::filesystem::is_empty("."));
    test::write_file("s.hdr", test::text_header());
    ImageHeader header{};
    EXPECT_EQ(ending([&] { read_header("s.img", header, "floatb"); }),
              "status 0: unspecified or unsupported file format\n");
}
