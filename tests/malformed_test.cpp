// The built program on damaged studies, preferences and options: how each run ends.

#include "tests/support/test.h"

#include <sstream>

// An expected ending is "." for a picture, or how the last line begins. Endings that are frequent
// are shortened to a capital letter.
static std::string whole_ending(const std::string &ending)
{
    static constexpr std::pair<char, const char *> Short[] = {
        {'D', "status 0: illegal image dimensions "},
        {'P', "status 0: Illegal picture size "},
        {'S', "status 0: Illegal slice_"},
        {'C', "status 0: Illegal NumColumn: "},
        {'V', "status 0: illegal volume (frame "},
        {'B', "status 0: illegal number of bins for normalization: "},
        {'U', "status 0: unspecified or unsupported file format"},
        {'L', "status 0: Illegal FlagScaleBar"},
        {'N', "status 0: 'pixel scaling value' not defined in a.hdr"},
        {'G', "status 0: gated image not support in the current version"},
        {'Z', "status 0: illegal pixel size in the subheader"},
        {'Y', "status 0: inconsistent pixel size among frames"},
        {'I', "status 0: illegal dimensions"},
        {'J', "status 0: inconsisten dimensions among frames"},
        {'K', "status 255: fseek error in mat_rblk (blkno "},
        {'R', "status 255: fread error in mat_rblk (512 expected, "},
        {'M', "status 255: matrix (1,"},
    };
    for (const auto &[letter, text] : Short) {
        if (ending.front() == letter) {
            return text + ending.substr(1);
        }
    }
    return ending == "." ? "status 1: Max=" : ending;
}

// Runs the program on the working directory's a.img, and looks at its ending.
static void expect_ending(const std::string &ending, const std::string &label,
                          const std::vector<std::string> &options = {})
{
    std::vector<std::string> words{"tiffgen", "a.img", "o", "0.0", "-X3"};
    words.insert(words.end(), options.begin(), options.end());
    const test::Outcome outcome = test::run_program(TIFFGEN, words);
    std::string out = outcome.out;
    out.resize(out.ends_with('\n') ? out.size() - 1 : out.size());
    const std::string found = outcome.err + "status " + std::to_string(outcome.status) + ": " +
                              out.substr(out.rfind('\n') + 1);
    EXPECT_TRUE(found.starts_with(whole_ending(ending))) << label << " ended with " << found;
}

static std::vector<std::string> split(const std::string &endings)
{
    std::istringstream row(endings);
    std::vector<std::string> parts;
    for (std::string part; std::getline(row, part, '|');) {
        parts.push_back(part);
    }
    return parts;
}

// The ending for one of some values: all of them end alike where a row has one ending.
static std::string ending_of(const std::vector<std::string> &row, std::size_t value)
{
    return row.size() == 1 ? row.front() : row.at(value);
}

namespace
{

struct Row {
    const char *what;
    const char *endings;
};

} // namespace

// Sets up a complete folder: a study, a palette, and preferences with one more line in front.
static void make_folder(const std::string &image, const std::string &header,
                        const std::string &preference = "", const char *format = "FLOATB")
{
    test::write_file("rainbow.plt", std::string(768, 'p'));
    test::write_file("GLOBAL.prf", preference + "\nFile Format:= \"" + format + "\"\n");
    test::write_file("tiffgen.prf", preference + "\n");
    test::write_file("a.hdr", header);
    test::write_file("a.img", image);
}

static const std::string Pixels =
    test::stored_floats({1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18}, true);

static const std::vector<std::string> Integers{"-1",    "0",     "1",         "32767",
                                               "32768", "65536", "2147483647"};
static const std::vector<std::string> Reals{"nan", "inf", "-inf", "1e39", "1e-30"};

// Calls `set` with each line "KEY:=VALUE" of a table and its ending.
template <class Rows, class Set>
static void for_each_line(const Rows &rows, const std::vector<std::string> &values, Set set)
{
    for (const Row &row : rows) {
        const std::vector<std::string> endings = split(row.endings);
        for (std::size_t i = 0; i < values.size(); ++i) {
            set(std::string(row.what) + ":=" + values[i], ending_of(endings, i));
        }
    }
}

TEST(Malformed, TextHeaders)
{
    // 3 x 2 x 3 pixels. -1|0|1|32767|32768|65536|2147483647:
    static constexpr Row Whole[] = {
        {"matrix size [1]", "D-1 x 2 x 3 in a.img|Swidth: 0|.|P98301 x 2|P98304 x 2|P196608 x 2|D"},
        {"matrix size [2]", "D3 x -1 x 3 in a.img|Sheight: 0|.|.|P9 x 32768|P9 x 65536|D"},
        {"number of slices", "D3 x 2 x -1 in a.img|P9 x 0|.|.|.|P9 x 43692|D"},
        {"!the right brain on the left", "."},
        {"!the anterior to the posterior", "."},
        {"!the superior to the inferior", "."},
        {"!data offset in bytes", "V1, bed 0) in a.img|.|.|.|.|.|."},
        {"!data format", "U|U|.|U|U|U|U"},
        {"number of frames", "."},
        {"number of beds", "."},
    };
    static constexpr Row Real[] = {{"scaling factor (mm/pixel) [1]", "."},
                                   {"scaling factor (mm/pixel) [2]", "."},
                                   {"slice thickness (mm/pixel)", "."},
                                   {"!pixel scaling value", ".|.|.|.|N"}};
    const auto run = [](const std::string &line, const std::string &ending) {
        make_folder(Pixels, test::text_header(line + "\n"));
        expect_ending(ending, line);
    };
    for_each_line(Whole, Integers, run);
    for_each_line(Real, Reals, run);
    run("matrix size [1] :=65536\nmatrix size [2] :=65536\nnumber of slices :=1",
        "D65536 x 65536 x 1 in a.img");
    run("!data format :=1\n!pixel scaling value :=inf", ".");
    run("number of frames :=2147483647\nnumber of beds :=2147483647", ".");

    for (const float pixel : {test::NotANumber, test::Infinity, -test::Infinity, 3e38F, -3e38F}) {
        std::vector<float> pixels(18, 1.0F);
        pixels[7] = pixel;
        make_folder(test::stored_floats(pixels, true), test::text_header());
        expect_ending(".", "one pixel");
        make_folder(test::stored_floats(std::vector(18, pixel), true), test::text_header());
        expect_ending(".", "all pixels");
    }
}

TEST(Malformed, PreferencesAndOptions)
{
    static constexpr Row Whole[] = {
        {"Number of Bins for Normalization", "B-1|B0|.|.|.|.|B2147483647"},
        {"Number of NumColumns", "."}, // -X3 replaces it
        {"Width of the Scale (pixel)", ".|.|.|P32776 x 2|P|P|P2147483656 x 2"},
        {"Maximum Pixel Value in Short Integer", "."},
    };
    static constexpr Row Real[] = {{"Normalized Global Value", "."},
                                   {"Peak Threshold for Normalization (%volume)", "."},
                                   {"Lower Threshold for Normalization (%intensity)", "."},
                                   {"Index Value for Out-of-Field", "."},
                                   {"Check Value for Out-of-Field", "."},
                                   {"Height of the Scale (% screen)", "."},
                                   {"Minimal Pixel Cutoff Value", "."}};
    const auto set_preference = [](const std::string &line, const std::string &ending) {
        make_folder(Pixels, test::text_header(), line);
        expect_ending(ending, line, {"-s1"});
    };
    for_each_line(Whole, Integers, set_preference);
    for_each_line(Real, Reals, set_preference);

    static constexpr Row Options[] = {
        {"-f", "V-1|V0|.|.|.|.|."},
        {"-b", "V1, bed -1|.|.|.|.|.|."},
        {"-x", "S|S|.|P|P|P|P"},
        {"-y", "S|S|.|.|P|P|P"},
        {"-X", "C-1|C0|.|P|P|P|P"},
        {"-s", "L|.|.|L|L|L|L"},
        {"-g", "."},
    };
    make_folder(Pixels, test::text_header());
    expect_ending("V-2147483648, bed 0) in a.img", "first frame", {"-f-2147483648"});
    for (const Row &row : Options) {
        const std::vector<std::string> endings = split(row.endings);
        for (std::size_t i = 0; i < Integers.size(); ++i) {
            expect_ending(ending_of(endings, i), row.what + Integers[i], {row.what + Integers[i]});
        }
    }
    for (const std::string &value : Reals) {
        expect_ending(".", "-m" + value, {"-m" + value, "-s1"});
    }
}

// All planes and gates that numbers can name are there, and more are promised: each is found.
static test::EcatFile endless_study()
{
    test::EcatFile file;
    file.put16(1, 376, {32767, 1, 32767, 0});
    file.put16(600, 132, {4, 1});
    file.put16(600, 184, {0x3F4C, 0xCCCD});
    std::vector<std::int64_t> entries;
    int block = 2;
    const auto put_block = [&](int next) {
        file.put32(block, 0, {0, next, 0, 31});
        file.put32(block, 16, entries);
        entries.clear();
        block = next;
    };
    for (std::int64_t number = 0; number < 0x4000; ++number) {
        entries.insert(entries.end(), {number << 16 | 1, 600, 600, 1});
        if (entries.size() == 124) {
            put_block(block + 1);
        }
    }
    put_block(2);
    return file;
}

TEST(Malformed, EcatFiles)
{
    const int first = test::small_ecat_block(1, 1, 0);
    const struct {
        const char *what;
        int block;
        int byte;
        bool wide; // 32 bits, otherwise the low 16 of the values
        const char *endings;
    } rows[] = {
        {"planes", 1, 376, false, "D0 x 0 x -1|Swidth: 0|.|M4,1,0,0) not found...|D|S|D"},
        {"frames", 1, 378, false, "S|S|.|.|S|S|S"},
        {"gates", 1, 380, false, "S|.|.|G|S|.|S"},
        {"beds", 1, 382, false, "S|.|.|.|S|.|S"},
        {"free", 2, 0, true, "."},
        {"next", 2, 4, true, "."},
        {"previous", 2, 8, true, "."},
        {"used", 2, 12, true, "."},
        {"matrix number", 2, 16, true, "M1,1,0,0) not found..."},
        {"first block", 2, 20, true, "K-1|K0|Z|R0 read|R|R|K2147483647"},
        {"last block", 2, 24, true, "."},
        {"status", 2, 28, true, "."},
        {"data type", first, 126, false, "."},
        {"width", first, 132, false, "I|I|J|J|I|I|I"},
        {"height", first, 134, false, "I|I|J|J|I|I|I"},
    };
    const auto run = [&](const test::EcatFile &file, const std::string &label,
                         const std::string &ending) {
        make_folder(file.bytes, "", "", "CTI6");
        expect_ending(ending, label);
    };
    for (const auto &row : rows) {
        const std::vector<std::string> endings = split(row.endings);
        for (std::size_t i = 0; i < Integers.size(); ++i) {
            test::EcatFile file = test::small_ecat_study();
            const std::vector<std::int64_t> value{std::stoll(Integers[i])};
            row.wide ? file.put32(row.block, row.byte, value)
                     : file.put16(row.block, row.byte, value);
            run(file, row.what + Integers[i], ending_of(endings, i));
        }
    }
    // Words of numbers: NaN, infinity, its negative, wrapped around to a huge one and to its negative.
    static constexpr std::array<std::int64_t, 2> Numbers[] = {
        {0x0080, 1}, {0x0080, 0}, {0x8080, 0}, {0, 1}, {0x8000, 0}};
    const struct {
        const char *what;
        int block;
        int byte;
        const char *endings;
    } reals[] = {{"separation", 1, 448, "."},
                 {"scale", first, 172, "."},
                 {"pixel size", first, 184, ".|Y|Z|Y|Z"}};
    for (const auto &row : reals) {
        for (std::size_t i = 0; i < std::size(Numbers); ++i) {
            test::EcatFile file = test::small_ecat_study();
            file.put16(row.block, row.byte, {Numbers[i][0], Numbers[i][1]});
            run(file, row.what, ending_of(split(row.endings), i));
        }
    }
    run(endless_study(), "a thousand million matrices", "G");
}
