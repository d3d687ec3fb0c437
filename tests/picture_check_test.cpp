// The checker on damaged pictures.

#include "companions/picture_check.h"
#include "companions/tiff_file.h"
#include "tests/support/installed.h"
#include "tests/support/test.h"

static bool is_whole(const std::string &bytes)
{
    test::write_file("damaged.tif", bytes);
    try {
        velmorant::check_picture("damaged.tif");
        return true;
    } catch (const velmorant::FileFault &) {
        return false;
    }
}

static std::string make_picture(const std::string &options)
{
    test::make_study();
    test::installed("tiffgen-run a.img o 0.0 " + options);
    return test::read_file("o.tif");
}

TEST(PictureCheck, RefusesEveryOtherLengthAndEveryOtherByteThatIsNoPixel)
{
    // Of three strips, the last of 6 rows, in gray and in colour; and of an odd number of bytes.
    for (const std::string options :
         {"-X1 -x30 -y22 -g1", "-X1 -x10 -y22 -g0 -s1", "-X3 -x7 -y1 -g1"}) {
        const std::string picture = make_picture(options);
        ASSERT_TRUE(is_whole(picture)) << options;
        EXPECT_FALSE(is_whole(picture + '\0')) << options;
        // The pixels lie between the header of 8 bytes and the directory, which begins at an even byte.
        const auto directory =
            static_cast<unsigned char>(picture[4]) + 256U * static_cast<unsigned char>(picture[5]);
        for (std::size_t place = 0; place < picture.size(); ++place) {
            EXPECT_FALSE(is_whole(picture.substr(0, place)))
                << options << ", " << place << " bytes";
            std::string damaged = picture;
            damaged[place] = static_cast<char>(damaged[place] ^ (1 << place % 8));
            EXPECT_TRUE((place >= 8 && place < directory) || !is_whole(damaged))
                << options << ", byte " << place;
        }
    }
}

TEST(PictureCheck, SaysWhatIsWrong)
{
    // Its one strip a byte further on, where there is room before the directory.
    std::string changed = make_picture("-X3 -x7 -y1 -g1");
    changed.at(30 + 2 + 5 * 12 + 8) = 9;
    test::write_file("gap.tif", changed);
    test::write_file("cut.tif", make_picture("-X1 -x10 -y30 -g1").substr(0, 500));
    test::installed("mkfifo fifo");
    // clang-format off
    const struct {
        std::string words;
        std::string said;
    } cases[] = {
        {"picture o.tif", "status 0: o.tif: whole, 10 x 90 pixels, gray\n"},
        {"picture o.tif 10 90", "status 0: o.tif: whole, 10 x 90 pixels, gray\n"},
        {"picture o.tif 90 10", "tiffgen-check: o.tif: it is 10 x 90 pixels, not 90 x 10\nstatus 1: "},
        {"picture cut.tif", "tiffgen-check: cut.tif: the directory is not in the file\nstatus 1: "},
        {"picture gap.tif", "tiffgen-check: gap.tif: its parts don't follow one another at byte 9\nstatus 1: "},
        {"picture a.img", "tiffgen-check: a.img: not a TIFF file\nstatus 1: "},
        {"picture none.tif", "tiffgen-check: none.tif: can't be opened\nstatus 1: "},
        {"picture .", "tiffgen-check: .: not a regular file\nstatus 1: "},
        {"picture fifo", "tiffgen-check: fifo: not a regular file\nstatus 1: "},
        {"--version", "status 0: tiffgen-check (Velmorant) " VERSION "\n"},
    };
    // clang-format on
    for (const auto &row : cases) {
        EXPECT_EQ(test::installed("exec tiffgen-check " + row.words), row.said);
    }
    for (const char *words :
         {"", "picture", "picture o.tif 10", "picture o.tif 10 9x", "study FLOATB",
          "study FLOATB a.img 1", "study RAW a.img", "look o.tif"}) {
        EXPECT_NE(test::installed(std::string("exec tiffgen-check ") + words).find("status 2: "),
                  std::string::npos)
            << words;
    }
    EXPECT_EQ(test::installed("tiffgen-check picture o.tif >/dev/full; echo $?"),
              "tiffgen-check: can't write to standard output\nstatus 0: 1\n");
}
