// The built program on damaged studies, preferences and options: how each run ends.

#include "tests/support/test.h"

// A palette, and preferences with one more line in front.
static void write_preferences(const std::string &preference = "", const char *format = "FLOATB")
{
    test::write_file("rainbow.plt", std::string(768, 'p'));
    test::write_file("GLOBAL.prf", preference + "\nFile Format:= \"" + format + "\"\n");
    test::write_file("t.prf", preference + "\n");
}

// Runs the program on the working directory's a.img. Expected is "." for a picture, or the last line,
// of status 0 unless it says another.
static void expect_ending(const std::string &expected, const std::vector<std::string> &words)
{
    const test::Outcome outcome = test::run_program(TIFFGEN, words);
    const std::string out = outcome.out.substr(0, outcome.out.find_last_not_of('\n') + 1);
    const std::string found =
        "status " + std::to_string(outcome.status) + ": " + out.substr(out.rfind('\n') + 1);
    EXPECT_EQ(outcome.err, "");
    if (expected == ".") {
        EXPECT_TRUE(found.starts_with("status 1: Max=")) << found;
    } else {
        EXPECT_EQ(found, (expected.starts_with("status") ? "" : "status 0: ") + expected);
    }
    EXPECT_EQ(std::filesystem::exists("o.tif"), expected == ".") << found;
    std::filesystem::remove("o.tif");
}

TEST(Malformed, RawStudiesPreferencesAndOptions)
{
    const std::string size = " (1 to 32767 pixels each way)";
    // clang-format off
    const struct {
        std::string header; // one more line
        std::string preference;
        std::vector<std::string> options; // behind a.img o 1 -X3
        std::string ending;
    } cases[] = {
        {"matrix size [1] :=-1", "", {}, "illegal image dimensions -1 x 2 x 3 in a.img"},
        {"matrix size [1] :=0", "", {}, "Illegal slice_width: 0"},
        {"matrix size [2] :=0", "", {}, "Illegal slice_height: 0"},
        {"matrix size [2] :=32768", "", {}, "Illegal picture size 9 x 32768" + size},
        {"matrix size [1] :=65536\nmatrix size [2] :=65536\nnumber of slices :=1", "", {},
         "illegal image dimensions 65536 x 65536 x 1 in a.img"},
        {"matrix size [1] :=1\nmatrix size [2] :=1\nnumber of slices :=1", "", {"-X1"}, "."},
        {"number of slices :=0", "", {}, "Illegal picture size 9 x 0" + size},
        {"!data offset in bytes :=-1", "", {}, "illegal volume (frame 1, bed 0) in a.img"},
        {"!data format :=4", "", {}, "unspecified or unsupported file format"},
        {"!data format 3", "", {}, "can't find a preference value"},
        {"!the right brain on the left :=0", "", {}, "."},
        {"!the right brain on the left :=2\n!the anterior to the posterior :=2\n"
         "!the superior to the inferior :=2", "", {}, "internal flag error"},
        {"!pixel scaling value :=0", "", {}, "'pixel scaling value' not defined in a.hdr"},
        {"!imagedata byte order :=native", "", {}, "unspecified byte order in the header"},
        {"number of frames :=2147483647", "", {"-b2147483647"}, "illegal volume (frame 1, bed 2147483647) in a.img"},
        {"number of frames :=2147483647\nnumber of beds :=2147483647", "", {}, "."},
        {"", "Number of Bins for Normalization:=0", {}, "illegal number of bins for normalization: 0"},
        {"", "Width of the Scale (pixel):=2147483647", {"-s1"}, "Illegal picture size 2147483656 x 2" + size},
        {"number of beds :=1", "", {"-f7", "-b1"}, "."},
        {"", "", {"-f0"}, "illegal volume (frame 0, bed 0) in a.img"},
        {"", "", {"-b-1"}, "illegal volume (frame 1, bed -1) in a.img"},
        {"", "", {"-y-1"}, "Illegal slice_height: -1"},
        {"", "", {"-X0"}, "Illegal NumColumn: 0"},
        {"", "", {"-X2147483647", "-x2147483647"}, "Illegal picture size 4611686014132420609 x 2" + size},
        {"", "", {"-s2", "-cnone"}, "Illegal FlagScaleBar"},
        {"", "", {"-g1", "-cnone", "-hnone.img"}, "Can't open color palette"},
        {"", "", {"-hnone.img"}, "can't open none.hdr"},
    };
    // clang-format on
    test::write_file(
        "a.img",
        test::stored_floats({1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18}, true));
    for (const auto &row : cases) {
        SCOPED_TRACE(row.header + row.preference);
        write_preferences(row.preference);
        test::write_file("a.hdr", test::text_header(row.header + "\n"));
        std::vector<std::string> words{"t", "a.img", "o", "1", "-X3"};
        words.insert(words.end(), row.options.begin(), row.options.end());
        expect_ending(row.ending, words);
    }
    test::write_file("a.hdr", test::text_header());
    expect_ending("can't open b.img", {"t", "b.img", "o", "1", "-ha.img", "-X0", "-x40000"});
    expect_ending("can't read .", {"t", ".", "o", "1", "-ha.img"});
    expect_ending("Can't write tiff file", {"t", "a.img", "none/o", "1"});
}

// All planes and gates that numbers can name are there, and more are promised: each is found.
static test::EcatFile endless_study()
{
    test::EcatFile file;
    file.put16(1, 376, {32767, 1, 32767, 0});
    file.put16(600, 132, {4, 1});
    file.put16(600, 184, {0x3F4C, 0xCCCD});
    for (int number = 0; number < 0x4000; ++number) {
        const int block = 2 + number / 31;
        file.put32(block, 0, {0, block < 530 ? block + 1 : 2});
        file.put32(block, 16 + 16 * (number % 31), {number << 16 | 1, 600, 600, 1});
    }
    return file;
}

TEST(Malformed, EcatFiles)
{
    const int first = test::small_ecat_block(1, 1, 0);
    const std::string gated = "gated image not support in the current version (norm_histogram)";
    const std::string empty = "Illegal slice_width: 0";
    // clang-format off
    const struct {
        int block, byte;
        std::vector<std::int64_t> words;
        std::string ending;
    } cases[] = {
        {1, 376, {-1}, "illegal image dimensions 0 x 0 x -1 in a.img"}, // planes
        {1, 376, {0}, empty},
        {1, 376, {32767}, "status 255: matrix (1,4,1,0,0) not found..."},
        {1, 378, {0}, empty}, // frames
        {1, 380, {-1}, empty}, // gates
        {1, 380, {0}, "."},
        {1, 380, {32767}, gated},
        {1, 382, {-1}, empty}, // beds after the first
        {2, 16, {7}, "status 255: matrix (1,1,1,0,0) not found..."},
        {2, 20, {-1, -1}, "status 255: fseek error in mat_rblk (blkno -1, nblks 1)..."},
        {2, 20, {-1, 32767}, "status 255: fseek error in mat_rblk (blkno 2147483647, nblks 1)..."},
        {2, 20, {-1, 0}, "status 255: fread error in mat_rblk (512 expected, 0 read)..."},
        {2, 20, {1, 0}, "illegal pixel size in the subheader"},
        {first, 132, {0}, "illegal dimensions"},
        {first, 134, {-1}, "illegal dimensions"},
        {first, 132, {21}, "inconsisten dimensions among frames"},
        {first, 134, {25}, "inconsisten dimensions among frames"},
        {first, 184, {0x8080, 0}, "illegal pixel size in the subheader"},
        {first, 184, {0x0080, 0}, "inconsistent pixel size among frames"}, // infinity
        {first, 184, {0x0080, 1}, "."}, // no number
    };
    // clang-format on
    for (const auto &row : cases) {
        SCOPED_TRACE(row.byte);
        test::EcatFile file = test::small_ecat_study();
        file.put16(row.block, row.byte, row.words);
        test::write_file("a.img", file.bytes);
        write_preferences("", "CTI6");
        expect_ending(row.ending, {"t", "a.img", "o", "1", "-X3"});
    }
    test::write_file("a.img", endless_study().bytes);
    expect_ending(gated, {"t", "a.img", "o", "1", "-X3"});
}
