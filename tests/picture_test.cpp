// The pictures that the built program makes, pixel by pixel.

#include "tests/support/test.h"
#include "tests/support/tiff.h"

#include <numeric>

using Values = std::vector<int>;

// 3 x 2 pixels in 3 slices. With 0 to 256 as the range of the palette, the index is the value times
// 254 / 256, truncated:  15  31  47 | 111 127 142 | 206 222 238
//                        63  79  95 | 158 174 190 | 253   9  19
static const std::vector<float> Volume{16,  32,  48,  64,  80,  96,  112, 128, 144,
                                       160, 176, 192, 208, 224, 240, 255, 10,  20};

static test::Picture make_picture(std::vector<std::string> options, const char *maximum = "256")
{
    // An output name whose second letter is that of an option is no option.
    options.insert(options.begin(), {"tiffgen", "a.img", "ox9", maximum});
    const std::string said = test::summary(test::run_program(TIFFGEN, options));
    EXPECT_TRUE(said.starts_with("status 1: ")) << said;
    EXPECT_NE(said.find("\nMax="), std::string::npos) << said;
    return test::read_picture("ox9.tif");
}

static void write_study(const std::string &header_changes, const std::string &data)
{
    // Red is the index, green 255 less the index, blue 7 for all.
    std::string palette(256, '\0');
    std::iota(palette.begin(), palette.end(), '\0');
    palette.append(palette.rbegin(), palette.rend()).append(256, '\7');
    test::write_file("rainbow.plt", palette);
    test::write_file("a.hdr", test::text_header(header_changes));
    test::write_file("a.img", data);
}

TEST(Montage, TilesAreCutPaddedAndCentred)
{
    write_study("", test::stored_floats(Volume, true));
    // clang-format off
    const struct {
        const char *label;
        std::vector<std::string> options;
        int width;
        Values expected;
    } cases[] = {
        {"an empty last tile", {"-X2"}, 6, { 15,  31,  47, 111, 127, 142,
                                             63,  79,  95, 158, 174, 190,
                                            206, 222, 238,   0,   0,   0,
                                            253,   9,  19,   0,   0,   0}},
        {"the middle pixel alone", {"-X3", "-x1", "-y1"}, 3, {79, 174, 9}},
        {"cut at the right side only", {"-X3", "-x2"}, 6, {15, 31, 111, 127, 206, 222,
                                                           63, 79, 158, 174, 253, 9}},
        {"padded, the last -x counting", {"-X2", "-x5", "-y3", "-x6"}, 12,
         {0, 0,  15,  31,  47, 0, 0, 0, 111, 127, 142, 0,
          0, 0,  63,  79,  95, 0, 0, 0, 158, 174, 190, 0,
          0, 0,   0,   0,   0, 0, 0, 0,   0,   0,   0, 0,
          0, 0, 206, 222, 238, 0, 0, 0,   0,   0,   0, 0,
          0, 0, 253,   9,  19, 0, 0, 0,   0,   0,   0, 0,
          0, 0,   0,   0,   0, 0, 0, 0,   0,   0,   0, 0}},
        {"margins show the value 0, half way up", {"-X3", "-x1", "-y3", "-m-256"}, 3,
         {142, 190, 238, 166, 214, 131, 127, 127, 127}},
    };
    // clang-format on
    for (const auto &row : cases) {
        std::vector<std::string> options = row.options;
        options.emplace_back("-g7");
        const test::Picture picture = make_picture(options);
        EXPECT_EQ(picture.width, row.width) << row.label;
        EXPECT_EQ(picture.bytes, row.expected) << row.label;
    }
    EXPECT_EQ(make_picture({"-g1", "-X1", "-x32767"}).bytes.at(32767 / 2), 31);
}

TEST(Montage, HeadersMayLeaveThingsOut)
{
    const Values expected{15, 31, 47, 111, 127, 142, 206, 222, 238,
                          63, 79, 95, 158, 174, 190, 253, 9,   19};
    write_study("", test::stored_floats(Volume, true));
    // Without a word on orientation and byte order, the standard ones are taken.
    test::write_file("a.hdr", "matrix size [1] :=3\nmatrix size [2] :=2\nnumber of slices :=3\n"
                              "!data format :=3\n!pixel scaling value :=1\n");
    EXPECT_EQ(make_picture({"-g1", "-X3"}).bytes, expected);
}

TEST(Montage, PeakNormalisationTakesTheMaximumToTheTop)
{
    write_study("matrix size [1] :=4\nmatrix size [2] :=1\nnumber of slices :=1\n",
                test::stored_floats({-20000, 10, 40, 80}, true));
    for (const char *maximum : {"0", "0.0", "abc"}) {
        EXPECT_EQ(make_picture({"-X1", "-g1"}, maximum).bytes, (Values{0, 31, 127, 254}));
    }
    EXPECT_EQ(make_picture({"-X1", "-g1"}, "-80").bytes, (Values{254, 0, 0, 0}));
    // In another GLOBAL.prf the top is 512, and what is out of field is marked by 256.
    test::write_file("GLOBAL.prf", "Normalized Global Value:= 512\n"
                                   "Index Value for Out-of-Field:= 256\n"
                                   "Check Value for Out-of-Field:= 20\n");
    EXPECT_EQ(make_picture({"-X1", "-g1", "-m-512"}, "0").bytes, (Values{190, 190, 190, 254}));
    std::filesystem::remove("GLOBAL.prf");
    // A positional argument counts as an option, too: no number, and 40 at the bottom.
    EXPECT_EQ(make_picture({"-X1", "-g1"}, "-m40").bytes, (Values{0, 22, 121, 254}));
}

TEST(Picture, ColoursComeFromThePaletteAndTheBarStandsBeside)
{
    write_study("matrix size [1] :=1\nmatrix size [2] :=8\nnumber of slices :=1\n",
                test::stored_floats({16, 32, 48, 64, 80, 96, 112, 300}, true));
    test::write_file("tiffgen.prf", "Width of the Scale (pixel):= 2\n");

    // Height 8: the bar has its ends at 2 and 6, and shows in the rows 3 to 5, at 3/4, 2/4 and 1/4.
    const test::Picture colour = make_picture({"-X1", "-s1"});
    EXPECT_EQ(colour.width, 3);
    EXPECT_EQ(colour.height, 8);
    Values expected;
    for (const int index : {15, 0,   0,   31, 0,  0,  47,  0, 0, 63,  190, 190,
                            79, 127, 127, 95, 63, 63, 111, 0, 0, 254, 0,   0}) {
        expected.insert(expected.end(), {index, 255 - index, 7});
    }
    EXPECT_EQ(colour.bytes, expected);
    const auto check = [] {
        return test::summary(test::run_program(TIFFGEN_CHECK, {"t", "picture", "ox9.tif"}));
    };
    EXPECT_EQ(check(), "status 0: ox9.tif: whole, 3 x 8 pixels, colour\n");

    const test::Picture gray = make_picture({"-X1", "-s1", "-g1"});
    EXPECT_EQ(gray.bytes, (Values{15, 0,   0,   31, 0,  0,  47,  0, 0, 63,  191, 191,
                                  79, 127, 127, 95, 63, 63, 111, 0, 0, 254, 0,   0}));
    EXPECT_EQ(check(), "status 0: ox9.tif: whole, 3 x 8 pixels, gray\n");

    // A bar of 3/4 of the height has its ends at 1 and 7; the preference file is named by -p.
    test::write_file("p",
                     "Width of the Scale (pixel):= 1\nHeight of the Scale (% screen):= 0.75\n");
    EXPECT_EQ(make_picture({"-X1", "-s1", "-g1", "-pp"}).bytes,
              (Values{15, 0, 31, 0, 47, 212, 63, 170, 79, 127, 95, 85, 111, 42, 254, 0}));
    test::write_file("tiffgen.prf", "Width of the Scale (pixel):= -1\n");
    EXPECT_EQ(make_picture({"-X2", "-s1", "-g1"}).bytes, (Values{15, 31, 47, 63, 79, 95, 111, 254}))
        << "narrowed by a negative width";
}
