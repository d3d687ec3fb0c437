// The installed checker on studies that lack something.

#include "tests/support/installed.h"
#include "tests/support/test.h"

static std::string check(const std::string &keyword, const std::string &image)
{
    return test::installed("exec tiffgen-check study " + keyword + " " + image);
}

TEST(StudyCheck, StatesWhatARawStudyHolds)
{
    test::write_file("b.hdr", test::text_header("number of frames :=2\n!data format :=2\n"
                                                "!pixel scaling value :=65400\n"
                                                "!the superior to the inferior :=0\n"
                                                "!data offset in bytes :=3\n"));
    test::write_file("b.img",
                     "???" + test::stored_integers(std::vector<std::int64_t>(36, 30000), 2, true) +
                         "more");
    EXPECT_EQ(check("FLOATB", "b.img"),
              "status 0: format: FLOATB\nsize: 3 x 2 x 3 pixels\npixel size: 2 x 2 x 4 mm\n"
              "frames: 1 to 2\nbeds: 0 to 0\n"
              "stored as: unsigned 16-bit integers, big-endian, from byte 3 on\n"
              "value of 32700: 65400\nright on left: 1\nanterior to posterior: 1\n"
              "superior to inferior: 0\nframe 1, bed 0: 60000 to 60000\n"
              "frame 2, bed 0: 60000 to 60000\nafter the last volume: 4 bytes\n");
}

// What is said on standard error, the last line and the program's name left out, then the status and the
// values.
static std::string faults(const std::string &keyword, const std::string &image)
{
    const std::string said = test::installed(
        "i=" + image + "; tiffgen-check study " + keyword +
        " $i 2>said >facts; s=$?; sed \"/not a "
        "whole study/d; s/^tiffgen-check: $i: //\" said; echo $s; grep '^frame ' facts; true");
    return said.substr(std::string("status 0: ").size());
}

TEST(StudyCheck, SaysWhatARawStudyLacks)
{
    const std::string frame = test::stored_floats(std::vector(18, 5.0F), true);
    const std::string strange =
        test::stored_floats({test::NotANumber, test::Infinity, -2.0F}, true);
    // clang-format off
    const struct {
        std::string changes; // of the header
        std::string data;
        std::string said;
    } cases[] = {
        {"number of frames :=2\nnumber of beds :=1\n", frame + frame + frame + "1234567",
         "frame 2, bed 1 has 7 of 72 bytes; volumes missing after it: 0\n1\n"
         "frame 1, bed 0: 5 to 5\nframe 2, bed 0: 5 to 5\nframe 1, bed 1: 5 to 5\n"},
        {"!data offset in bytes :=100\n", frame,
         "frame 1, bed 0 has 0 of 72 bytes; volumes missing after it: 0\n1\n"},
        // A header that promises eight gigabytes costs nothing.
        {"matrix size [1] :=32768\nmatrix size [2] :=21845\n", frame,
         "frame 1, bed 0 has 72 of 8589803520 bytes; volumes missing after it: 0\n1\n"},
        {"number of frames :=2147483647\nnumber of beds :=2147483647\n", frame,
         "frame 2, bed 0 has 0 of 72 bytes; volumes missing after it: 4611686016279904254\n1\n"
         "frame 1, bed 0: 5 to 5\n"},
        {"!data format :=4\n", frame, "unknown data format 4\n1\n"},
        {"!data offset in bytes :=-1\n", frame, "the data begin before the file\n1\n"},
        {"number of slices :=0\n", frame, "no pixels\n1\n"},
        {"number of beds :=-1\n", frame, "no volumes\n1\n"},
    };
    // clang-format on
    for (const auto &row : cases) {
        test::write_file("c.hdr", test::text_header(row.changes));
        test::write_file("c.img", row.data);
        EXPECT_EQ(faults("FLOATL", "c.img"), row.said) << row.changes;
    }
    test::write_file("c.hdr", test::text_header());
    test::write_file("c.img", strange + frame.substr(12));
    EXPECT_EQ(faults("FLOATL", "c.img"),
              "0\nframe 1, bed 0: -2 to inf, and 1 pixels that are not numbers\n");
    std::filesystem::remove("c.img");
    EXPECT_EQ(faults("FLOATL", "c.img"), "can't open c.img\n1\n");
    test::installed("mkfifo c.img");
    EXPECT_EQ(faults("FLOATL", "c.img"), "c.img is not a regular file\n1\n");
}

TEST(StudyCheck, SaysWhatAnEcatStudyLacks)
{
    using File = test::EcatFile;
    static constexpr int Removed = -1;
    // The word of a plane's directory entry: 0 its number, 1 and 2 its first and last block.
    const auto put_entry = [](File &file, int ordinal, int word, int value) {
        file.put32(2, 16 + 16 * ordinal + 4 * word, {value});
    };
    static const int Block = test::small_ecat_block(2, 3, 1);
    const std::string last_plane = "frame 2, bed 1: 1 of 3 planes ";
    // clang-format off
    const struct {
        std::string said;
        std::function<void(File &)> change;
    } cases[] = {
        {"", [](File &) {}},
        {last_plane + "missing, the first is plane 3\n", [&](File &file) { put_entry(file, 11, 0, Removed); }},
        {"frame 1, bed 0: 2 of 3 planes missing, the first is plane 1\n"
         "frame 1, bed 0: 1 of 3 planes not wholly in the file, the first is plane 2\n",
         [&](File &file) {
             put_entry(file, 0, 0, Removed);
             put_entry(file, 1, 1, 2); // the directory
             put_entry(file, 2, 0, Removed);
         }},
        {"it is gated, which tiffgen doesn't show\n"
         "frames 1 to 2, bed 0: 3 of 3 planes missing, the first is plane 1\n"
         "frames 1 to 2, bed 1: 3 of 3 planes missing, the first is plane 1\n",
         [](File &file) { file.put16(1, 380, {2}); }}, // gates
        {"frames 3 to 4096, bed 0: 3 of 3 planes missing, the first is plane 1\n"
         "frames 3 to 4096, bed 1: 3 of 3 planes missing, the first is plane 1\n",
         [](File &file) { file.put16(1, 378, {4096}); }},
        {last_plane + "of no size, or of another than the first, the first is plane 3\n",
         [](File &file) { file.put16(Block, 132, {21}); }},
        {last_plane + "not wholly in the file, the first is plane 3\n",
         [&](File &file) { put_entry(file, 11, 2, Block + 1); }},
        {last_plane + "not wholly in the file, the first is plane 3\n",
         [&](File &file) { put_entry(file, 11, 1, 39); }},
        {last_plane + "in the blocks of others, the first is plane 3\n",
         [&](File &file) {
             file.put(38, 0, file.bytes.substr(static_cast<std::size_t>(Block - 1) * 512, 512));
             file.put(40, 0, ""); // from the last block of the file's last plane on
             put_entry(file, 11, 1, 38);
             put_entry(file, 11, 2, 40);
         }},
        {"the directory goes on in block 1000, which is not in the file\n",
         [](File &file) { file.put32(2, 4, {1000}); }},
        {"frame 1, bed 0: 1 of 3 planes not wholly in the file, the first is plane 1\n",
         [](File &file) { file.bytes.resize(38 * 512 - 1); }},
        {"more than the 4096 frames, 256 planes, 64 gates and 16 beds that have numbers of their own\n",
         [](File &file) { file.put16(1, 382, {16}); }},
        {"the main header promises no planes\n", [](File &file) { file.put16(1, 376, {0}); }},
    };
    // clang-format on
    for (const auto &row : cases) {
        File file = test::small_ecat_study();
        row.change(file);
        test::write_file("e.v", file.bytes);
        const std::string found = faults("CTI6", "e.v");
        EXPECT_TRUE(found.starts_with(row.said + (row.said.empty() ? "0\n" : "1\n"))) << found;
    }
    // Of volumes that are whole the values are known: the pixels are 100 k + i - 700, i from 0 to 511, in
    // steps of a half, a quarter and an eighth, and 0 where the blocks end.
    test::write_file("e.v", test::small_ecat_study().bytes);
    EXPECT_EQ(check("CTI6", "e.v"), "status 0: format: CTI6\nsize: 20 x 26 x 3 pixels\n"
                                    "pixel size: 2 x 2 x 3.375 mm\nframes: 1 to 2\nbeds: 0 to 1\n"
                                    "gates: 1\n"
                                    "pixels at the end of each plane that are read as 0: 8\n"
                                    "frame 1, bed 0: -350 to 1.375\nframe 2, bed 0: -50 to 205.5\n"
                                    "frame 1, bed 1: -200 to 55.5\nframe 2, bed 1: 0 to 355.5\n");
    test::write_file("short.v", std::string(1000, '\0'));
    EXPECT_EQ(faults("CTI6", "short.v"), "the directory goes on in block 2, which is not in the "
                                         "file\nthe main header promises no planes\n1\n");
    EXPECT_EQ(faults("CTI6", "none.v"), "can't open none.v\n1\n");
}
