// Writing by keyword.

#include "image/format_dispatch.h"
#include "image/old_layout.h"
#include "prefs/settings.h"
#include "tests/support/files.h"
#include "tests/support/process.h"
#include "tests/support/raw_study.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

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

using Writer = std::function<void(float *, ImageHeader &, const FormatSetting &)>;

static const std::vector<Writer> Writers{
    [](float *pixels, ImageHeader &header, const FormatSetting &settings) {
        write_image_header("s.img", pixels, header, settings, 3.0F, 2.0F);
    },
    [](float *pixels, ImageHeader &header, const FormatSetting &settings) {
        write_image_matrix("s.img", pixels, header, settings, 3.0F, 2.0F);
    },
    [](float *pixels, ImageHeader &header, const FormatSetting &settings) {
        write_image_matrix_multiple("s.img", pixels, header, settings, 3.0F, 2.0F);
    },
    [](float *pixels, ImageHeader &header, const FormatSetting &settings) {
        write_image_matrix_wo_header("s.img", pixels, header, settings, 3.0F, 2.0F);
    }};

TEST(FormatWriting, KeywordsSetTheStorage)
{
    const test::EmptyFolder folder;
    // The pixels are 1.5, below the threshold and replaced by 2, and 4.
    const struct {
        const char *keyword;
        std::int32_t byte_order, data_format;
        std::string data;
        float step;
    } cases[] = {
        {"SHORTINT2B", 1, 1, test::stored_integers({16350, 32700}, 2, true), 4.0F / 32700.0F},
        {"SHORTINT2L", 0, 1, test::stored_integers({16350, 32700}, 2, false), 4.0F / 32700.0F},
        {"FLOATB", 1, 3, test::stored_floats({2.0F, 4.0F}, true), 1.0F},
        {"FLOATL", 0, 3, test::stored_floats({2.0F, 4.0F}, false), 1.0F},
    };
    std::vector<float> pixels{1.5F, 4.0F};
    for (const auto &row : cases) {
        const FormatSetting settings = create_format_setting(row.keyword);
        for (std::size_t i = 0; i < Writers.size(); ++i) {
            std::filesystem::remove("s.hdr");
            std::filesystem::remove("s.img");
            const bool header_only = i == 0;
            const bool bare = i == 3;
            ImageHeader header = unsigned_header();
            Writers[i](pixels.data(), header, settings);

            ImageHeader expected = unsigned_header();
            expected.byte_order = row.byte_order;
            expected.data_format = row.data_format;
            expected.data_offset = header_only || bare ? 512 : 0;
            EXPECT_EQ(test::fields(header), test::fields(expected)) << row.keyword << i;
            EXPECT_EQ(std::filesystem::exists("s.hdr"), !bare);
            EXPECT_EQ(std::filesystem::exists("s.img"), !header_only);
            if (!bare) {
                read_header("s.img", header, "FLOATB");
                expected.pixel_scaling = row.data_format == 1 ? 4.0F : 32700.0F;
                EXPECT_EQ(test::fields(header), test::fields(expected)) << row.keyword << i;
            }
            if (!header_only) {
                EXPECT_EQ(test::read_file("s.img"), std::string(bare ? 512 : 0, '\0') + row.data)
                    << row.keyword << i;
            }
        }
        ImageHeader header = unsigned_header();
        EXPECT_EQ(write_image_matrix_wo_header("s.img", pixels.data(), header, settings, 3, 2),
                  row.step);
    }
}

TEST(FormatWriting, EcatHasItsHeaderInTheFile)
{
    const test::EmptyFolder folder;
    INT_MaxPixelValue = 8;
    std::vector<float> pixels{1.5F, 4.0F};
    const std::string said[] = {"header information will be written with image data...\n", "", "",
                                "images need to be written with a header in the CTI6 format...\n"};
    for (std::size_t i = 0; i < Writers.size(); ++i) {
        std::filesystem::remove("s.img");
        ImageHeader header = unsigned_header();
        const auto write = [&] {
            Writers[i](pixels.data(), header, create_format_setting("CTI6"));
            EXPECT_EQ(test::fields(header), test::fields(unsigned_header()));
        };
        EXPECT_EQ(ending(write), "status 77: " + said[i]);
        EXPECT_FALSE(std::filesystem::exists("s.hdr"));
        EXPECT_EQ(std::filesystem::exists("s.img"), i != 0);
        if (i != 0) {
            EXPECT_EQ(test::read_file("s.img").substr(1536, 4),
                      test::stored_integers({4, 8}, 2, false));
        }
    }
    ImageHeader header = unsigned_header();
    EXPECT_EQ(write_image_matrix_wo_header("s.img", pixels.data(), header,
                                           create_format_setting("CTI6"), 3, 2),
              0.0F);
}

TEST(FormatWriting, OtherKeywordsAreRefusedBeforeAnythingChanges)
{
    const test::EmptyFolder folder;
    FormatSetting unterminated = create_format_setting("FLOATB");
    unterminated.keyword.fill('C');
    for (const FormatSetting &settings :
         {create_format_setting("floatb"), create_format_setting("CTI"), create_format_setting(""),
          create_format_setting(std::string(300, 'F')), unterminated}) {
        for (const Writer &write : Writers) {
            ImageHeader header{};
            EXPECT_EQ(ending([&] { write(nullptr, header, settings); }),
                      "status 0: unspecified or unsupported file format\n");
        }
    }
    EXPECT_TRUE(std::filesystem::is_empty("."));
}

TEST(FormatWriting, VolumesLieInTheOrderOfTheFormat)
{
    ImageHeader header = unsigned_header();
    header.num_frames = 4;
    header.num_beds = 2;
    EXPECT_EQ(volume_index(header, 3, 1, "FLOATB"), 6U);
    EXPECT_EQ(volume_index(header, 3, 1, "CTI6"), 7U);
}
