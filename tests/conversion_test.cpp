// Studies that go from format to format, by the example programs and into pictures.

#include "tests/support/test.h"
#include "tests/support/tiff.h"

static std::string run(const char *program, std::vector<std::string> words)
{
    words.insert(words.begin(), std::filesystem::path(program).filename());
    return test::summary(test::run_program(program, words));
}

static void make_phantom(const std::string &keyword, const std::string &image,
                         const char *width = "64", const char *height = "64",
                         const char *slices = "6")
{
    EXPECT_EQ(run(MAKE_PHANTOM, {keyword, image, width, height, slices, "2", "2"}), "status 0: ");
}

// The pictures of two volumes of a phantom, one after the other.
static std::vector<int> pictures(const std::string &keyword, const std::string &image)
{
    test::write_file("GLOBAL.prf", "File Format:= \"" + keyword + "\"\n");
    std::vector<int> bytes;
    for (const auto &options : {std::array{"0.0", "-f2", "-b0"}, {"30", "-f1", "-b1"}}) {
        const std::string said =
            run(TIFFGEN, {image, "p", options[0], options[1], options[2], "-g1", "-X3"});
        EXPECT_TRUE(said.starts_with("status 1: ")) << said;
        EXPECT_NE(said.find("\nXD= 64;YD= 64;SL= 6;PX=3.400;PY=3.400;PZ=24.000;F= 2;B=1\nMax="),
                  std::string::npos)
            << said;
        const test::Picture picture = test::read_picture("p.tif");
        EXPECT_EQ(picture.width, 192);
        bytes.insert(bytes.end(), picture.bytes.begin(), picture.bytes.end());
    }
    return bytes;
}

TEST(Conversion, ThePhantomHasTheSamePicturesFromEveryFormatToEveryOther)
{
    static const std::vector<std::string> keywords{"FLOATB", "FLOATL", "CTI6", "SHORTINT2B",
                                                   "SHORTINT2L"};
    test::write_file("rainbow.plt", std::string(768, 'p'));
    make_phantom("FLOATB", "a.img");
    const std::vector<int> expected = pictures("FLOATB", "a.img");
    EXPECT_EQ(*std::ranges::max_element(expected), 254);
    for (const std::string &from : keywords) {
        make_phantom(from, "a.img");
        for (const std::string &to : keywords) {
            EXPECT_EQ(run(CONVERT_IMAGE, {from, "a.img", to, "b.img"}), "status 0: ");
            const std::vector<int> found = pictures(to, "b.img");
            ASSERT_EQ(found.size(), expected.size());
            int worst = 0; // an index less or more, where something is rounded
            for (std::size_t i = 0; i < found.size(); ++i) {
                worst = std::max(worst, std::abs(found[i] - expected[i]));
            }
            EXPECT_LE(worst, from.starts_with("FLOAT") && to.starts_with("FLOAT") ? 0 : 1)
                << from << " to " << to;
        }
    }
}

TEST(Conversion, FailuresHaveOrdinaryStatuses)
{
    make_phantom("FLOATB", "a.img", "32", "8", "3");
    make_phantom("CTI6", "e.img", "32", "8", "3");
    const std::string raw = test::read_file("a.hdr") + test::read_file("a.img");
    std::filesystem::create_symlink("a.img", "link.img");
    std::filesystem::create_symlink("/dev/full", "full.img");
    std::filesystem::create_symlink("/dev/full", "header.hdr");
    test::write_file("cut.img", test::read_file("e.img").substr(0, 5000));
    // Says in its header that it has two gates, and has one.
    std::string gated = test::read_file("e.img");
    gated[380] = 2;
    test::write_file("gated.img", gated);
    test::write_file("empty.img", std::string(1024, '\0'));
    test::write_file("zero.hdr", test::text_header());
    test::write_file("zero.img", "");
    test::write_file("beds.hdr", test::text_header("number of beds :=16\n"));
    const std::string no_gate = "matrix (1,1,2,0,0) not found...\n"
                                "CHECK A POSSIBLE PROBLEM IN THE MAIN HEADER...\n"
                                "THE PROGRAM MAY FAIL IN THE FURTHER PROCESSING...\n";
    // clang-format off
    const struct {
        int status;
        std::vector<std::string> words;
        std::string said;
    } cases[] = {
        {0, {"CTI6", "gated.img", "CTI6", "g"}, no_gate},
        {0, {"FLOATB", "zero.img", "CTI6", "z"}, ""},
        {0, {"CTI6", "z", "FLOATB", "b"},
         "warning: each plane's end, short of a block of 256 pixels, is read as 0\n"},
        {1, {"FLOATB", "none.img", "CTI6", "b"}, "can't open none.hdr\n"},
        {1, {"FLOATB", "a.img", "FLOAT", "b"}, "unspecified or unsupported file format\n"},
        {1, {"FLOATB", "a.img", "CTI6", "none/b"}, "can't open none/b\n"},
        {1, {"FLOATB", "a.img", "FLOATL", "full.img"}, "can't write full.img\n"},
        {1, {"FLOATB", "a.img", "FLOATL", "header.img"}, "can't write header.hdr\n"},
        {1, {"CTI6", "empty.img", "FLOATL", "b"}, "no pixels in empty.img\n"},
        {1, {"CTI6", "cut.img", "FLOATL", "b"}, "fread error in mat_rblk (512 expected, 0 read)...\n"},
        {1, {"FLOATB", "a.img", "CTI6", "/dev/full"},
         "fwrite error in mat_wblk (512 expected, 0 written)...\n"},
        {1, {"FLOATB", "zero.img", "SHORTINT2B", "b"}, "'pixel scaling value' not defined in b.hdr\n"},
        {1, {"FLOATB", "beds.img", "CTI6", "b"},
         "an ECAT 6 file can't hold 1 frames at 17 beds of 3 x 2 x 3 pixels\n"},
        {1, {"FLOATB", "a.img", "CTI6", "link.img"}, "the output would replace a.img\n"},
        {1, {"CTI6", "e.img", "FLOATB", "o.hdr"}, "the output would replace its own header o.hdr\n"},
    };
    // clang-format on
    for (const auto &row : cases) {
        const std::string ending =
            row.status == 0 ? "status 0: "
                            : "convert_image: not converted: " + row.words[1] + "\nstatus 1: ";
        EXPECT_EQ(run(CONVERT_IMAGE, row.words), row.said + ending);
    }
    EXPECT_EQ(test::read_file("a.hdr") + test::read_file("a.img"), raw);
    EXPECT_EQ(run(CONVERT_IMAGE, {"FLOATB", "a.img", "FLOATL"}),
              "Usage: convert_image FROM-KEYWORD IMAGE TO-KEYWORD OUTPUT\nstatus 2: ");
    EXPECT_EQ(run(MAKE_PHANTOM, {"CTI6", "p.v", "32768", "8", "8", "1", "1"}),
              "an ECAT 6 file can't hold 1 frames at 1 beds of 32768 x 8 x 8 pixels\n"
              "make_phantom: not made: p.v\nstatus 1: ");
    EXPECT_EQ(run(MAKE_PHANTOM, {"FLOATB", "p.img", "8", "x", "8"}),
              "make_phantom: not a size: x\nstatus 2: ");
}
