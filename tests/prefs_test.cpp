#include "prefs/error_report.h"
#include "prefs/preference_file.h"
#include "prefs/preference_sets.h"
#include "prefs/run_environment.h"
#include "prefs/settings.h"
#include "tests/support/test.h"

using namespace velmorant;
using test::ending;

static std::vector<std::string> lines_of(const std::string &bytes)
{
    test::write_file("lines", bytes);
    std::FILE *file = std::fopen("lines", "r");
    std::vector<std::string> lines;
    Line line{};
    while (fgetsmod(line.data(), static_cast<std::int32_t>(line.size()), file) != nullptr) {
        lines.emplace_back(line.data());
    }
    std::fclose(file);
    return lines;
}

TEST(PreferenceLine, EndsAtLineFeedCarriageReturnLimitOrEndOfFile)
{
    const std::string piece(253, 'x');
    EXPECT_EQ(lines_of("a\nb\r\n" + piece + "y\nc"),
              (std::vector<std::string>{"a\n", "b\r", "\n", piece, "y\n", "c"}));
    std::FILE *directory = std::fopen(".", "r");
    Line line{};
    EXPECT_EQ(fgetsmod(line.data(), 254, directory), nullptr) << "read error";
    std::fclose(directory);
}

TEST(PreferenceLine, KeyMatchesAnywhereInAnyCase)
{
    EXPECT_TRUE(test_strings("old NUMBER of numcolumns := 4 (was 8)", "Number of NumColumns"));
    EXPECT_FALSE(test_strings("Number of NumColumn", "Number of NumColumns"));
    // Only A to Z fold: neither the neighbours of the letters nor letters of other alphabets do.
    for (const auto &[a, b] : {std::pair{"[", "{"}, {"@", "`"}, {"\xC4", "\xE4"}}) {
        EXPECT_FALSE(test_strings(a, b)) << a;
    }
}

TEST(PreferenceLine, NumbersAreReadAsAtoiAndAtofReadThem)
{
    EXPECT_EQ(get_int_strings("a:= 012 columns b:= 2"), 12);
    EXPECT_EQ(get_int_strings("key:=-3.75"), -3);
    EXPECT_EQ(get_int_strings("key:= 4294967297"), 1);
    EXPECT_EQ(get_short_int_strings("key:= 40000"), -25536);
    EXPECT_EQ(get_float_strings("key:=-3.75 mm"), -3.75F);
    EXPECT_EQ(ending([] { get_float_strings("key = 12"); }),
              "status 0: can't find a preference value\n");
}

TEST(PreferenceLine, TextIsWhatStandsBetweenTheFirstTwoQuotesBehindTheSeparator)
{
    Text value{};
    get_string_strings("\"no\" key:= x \"a b\" \"c\"\n", value);
    EXPECT_STREQ(value.data(), "a b");
    // Nothing is written after the value.
    std::array<char, 5> full{'1', '2', '3', '4', '\0'};
    get_string_strings("key:=\"ab\"", full);
    EXPECT_STREQ(full.data(), "ab34");
    get_string_strings("key:=\"abcdefgh\"", full);
    EXPECT_STREQ(full.data(), "abcd");
    for (const char *line : {"key \"a\"", "key:= \"a", "key:= a"}) {
        EXPECT_EQ(ending([&] { get_string_strings(line, value); }),
                  "status 0: can't find a preference string\n")
            << line;
    }
}

TEST(PreferenceFile, FirstLineWinsAndMissingKeysAreAppended)
{
    test::write_file("p", "x Size := 3\r\nSize:= 4\n" + std::string(249, ' ') + "cut key:= 9\n");
    EXPECT_EQ(preference_int_strings("p", "size", 1), 3);
    // The key "cut key" is cut by the limit of 253 characters a line.
    EXPECT_EQ(preference_int_strings("p", "cut key", -5), -5);
    EXPECT_EQ(preference_float_strings("p", "Real key", 0.1F), 0.1F);
    EXPECT_EQ(preference_short_int_strings("p", "Short key", 40000), -25536);
    Text text{};
    preference_string_strings("p", text, "Text key", "a b");
    EXPECT_STREQ(text.data(), "a b");
    EXPECT_TRUE(test::read_file("p").ends_with("cut key:= 9\ncut key:= -5\nReal key:= 0.100000\n"
                                               "Short key:= -25536\nText key:= \"a b\"\n"));
    // A key appended to a line without an end shares that line and is read from its front.
    test::write_file("q", "File Format:= \"CTI6\"");
    EXPECT_EQ(preference_int_strings("q", "Columns", 10), 10);
    EXPECT_EQ(test::read_file("q"), "File Format:= \"CTI6\"Columns:= 10\n");
    EXPECT_EQ(preference_int_strings("q", "Columns", 10), 0);
}

TEST(PreferenceFile, FilesWithoutAnEndEndTheRun)
{
    EXPECT_EQ(ending([] { preference_int_strings("/dev/zero", "K", 1); }),
              "status 0: too many lines in /dev/zero\n");
}

TEST(PreferenceSets, EveryKeyReachesItsSetting)
{
    ending([] { read_global_preference(""); });
    // The lines of the new file in order, each with another value.
    std::string file;
    int value = 100;
    for (const std::string &line : lines_of(test::read_file("GLOBAL.prf"))) {
        file += line.substr(0, line.find(":=")) + ":= \"" + std::to_string(++value) + "\"\n";
    }
    file.erase(std::remove(file.begin(), file.end() - 8, '"'), file.end() - 8);
    test::write_file("GLOBAL.prf", file);
    read_global_preference("");
    EXPECT_EQ((std::array{STD_Xd, STD_Yd, STD_Zd, INT_Xd, INT_Yd, INT_Zd, INT_NormSet.bin_count,
                          std::int32_t{INT_MaxPixelValue}}),
              (std::array{101, 102, 103, 108, 109, 110, 121, 122}));
    EXPECT_EQ((std::array{STD_Px, STD_Py, STD_Pz, STD_Acpc, INT_Px, INT_Py, INT_Pz, INT_X0, INT_Y0,
                          INT_Z0, INT_AcpcOffset, INT_Global, INT_NormSet.peak_threshold,
                          INT_NormSet.lower_threshold, INT_OutOfFieldValue, INT_OutOfFieldCheck}),
              (std::array{104.0F, 105.0F, 106.0F, 107.0F, 111.0F, 112.0F, 113.0F, 114.0F, 115.0F,
                          116.0F, 117.0F, 118.0F, 119.0F, 120.0F, 123.0F, 124.0F}));
    EXPECT_STREQ(FileFormat.data(), "125");
    EXPECT_EQ((std::array{STD_X0, STD_Y0, STD_Z0}), (std::array{50.0F, 50.5F, 0.0F}));
}

TEST(PreferenceSets, WorkingDirectoryMustLeaveRoomForThePaletteName)
{
    const std::string folder = std::filesystem::current_path().string();
    for (const auto &[length, said] :
         {std::pair{242U, "status 77: p does not exist...\n'Number of NumColumns' created in p"},
          {243U, "status 134: p does not exist...\n"},
          {254U, "status 0: p does not exist...\ncan't get directory path\n"}}) {
        const std::string deep = folder + "/" + std::string(length - folder.size() - 1, 'd');
        std::filesystem::create_directory(deep);
        std::filesystem::current_path(deep);
        EXPECT_TRUE(ending([] { read_local_preference("p"); }).starts_with(said)) << length;
        EXPECT_EQ(test::read_file("p").find("d/rainbow.plt\"") != std::string::npos, length == 242);
    }
}

TEST(RunEnvironment, OnlyTheCountedTextsAreReportedAndQuotationsNeedRoom)
{
    EXPECT_EQ(ending([] { print_error_message(1, "a", "b"); }), "status 0: a\n");
    Text text{};
    copy_text_or_abort(text, std::string(252, 'q'));
    add_quotations(text);
    EXPECT_EQ(text.data(), '"' + std::string(252, 'q') + '"');
    EXPECT_EQ(ending([&] { add_quotations(text); }),
              "status 0: strings too long to add quotation marks\n");
}
