// The built program as its users run it: what it prints, how it ends, which files it leaves.

#include "tests/support/test.h"

using test::Outcome;

static const std::string Banner = "\nTIFF FILE GENERATOR (Version 3.1)\n"
                                  "Velmorant tomographic brain image analysis\n"
                                  "by Orlavesk Tarn and the Velmorant developers\n"
                                  "Hollin Centre\n"
                                  "Free software under the MIT licence\n"
                                  "For research, not for diagnosis\n\n";

static const std::string Usage =
    "Command line: (image file) (output file w/o ext.) (max pixel value, 0.0 for peak "
    "normalization) (options)\n\nOptions:\n"
    "-f(frame); -b(bed position)\n-x(slice width, pixel)\n-y(slice height, pixel)\n"
    "-X(Number of columns)\n-c(\"color palette file\")\n-m(minimal pixel cutoff)\n"
    "-s(color scale bar: 0=no, 1=yes)\n-g(gray scale: 0=color, 1=gray)\n"
    "-h(\"common header for image file\")\n-p(\"local preference file name with directory\")\n"
    "\nOutput:\n(output file name).tif  - TIFF image file\n";

// The 17th of the 18 values, 240, is in bin 961 of (255 - 10) / 1024 each; 96 to 224 are averaged.
static const std::string Summary = "XD=  3;YD=  2;SL= 3;PX=2.000;PY=2.000;PZ=4.000;F= 1;B=0\n"
                                   "Max=255.000;Min= 10.000;Peak=239.927;Avg=160.000\n";

// Runs the program in the working directory, which so is the program directory, too.
static Outcome tiffgen(std::vector<std::string> arguments)
{
    arguments.insert(arguments.begin(), "tiffgen");
    return test::run_program(TIFFGEN, arguments);
}

// Everything that a run needs: a study a.img with its header, and a palette.
static void make_inputs(const std::string &header_changes = "")
{
    test::write_file("rainbow.plt", std::string(768, 'p'));
    test::write_file("a.hdr", test::text_header(header_changes));
    test::write_file("a.img", test::stored_floats({16, 32, 48, 64, 80, 96, 112, 128, 144, 160, 176,
                                                   192, 208, 224, 240, 255, 10, 20},
                                                  true));
}

TEST(FirstRun, CreatesCompletePreferenceFilesAndGoesOn)
{
    make_inputs();
    const std::pair<std::string, std::vector<std::string>> files[] = {
        {"GLOBAL.prf",
         {"Standard Output x Dimension:= 128",
          "Standard Output y Dimension:= 128",
          "Standard Output z Dimension:= 60",
          "Standard Output x Pixel Size:= 2.250000",
          "Standard Output y Pixel Size:= 2.250000",
          "Standard Output z Pixel Size:= 2.250000",
          "Standard Output Acpc Level:= 32.000000",
          "Internal x Dimension:= 128",
          "Internal y Dimension:= 128",
          "Internal z Dimension:= 60",
          "Internal x Pixel Size:= 2.250000",
          "Internal y Pixel Size:= 2.250000",
          "Internal z Pixel Size:= 2.250000",
          "Internal x Center:= 63.500000",
          "Internal y Center:= 63.500000",
          "Internal z Center:= 0.000000",
          "Acpc Center Offset (mm):= -16.000000",
          "Normalized Global Value:= 1000.000000",
          "Peak Threshold for Normalization (%volume):= 0.999000",
          "Lower Threshold for Normalization (%intensity):= 0.400000",
          "Number of Bins for Normalization:= 1024",
          "Maximum Pixel Value in Short Integer:= 32700",
          "Index Value for Out-of-Field:= -10000000000.000000",
          "Check Value for Out-of-Field:= -10000.000000",
          "File Format:= \"FLOATB\""}},
        {"tiffgen.prf",
         {"Number of NumColumns:= 10", "Height of the Scale (% screen):= 0.500000",
          "Width of the Scale (pixel):= 10", "Minimal Pixel Cutoff Value:= 0.000000",
          "Color Palette File:= \"" + std::filesystem::current_path().string() + "/rainbow.plt\"",
          "Color Scale Bar: 0=no, 1=yes:= 0", "Gray Scale: 0=color, 1=gray:= 0"}}};
    std::string announced;
    std::string expected;
    for (const auto &[name, lines] : files) {
        announced += name + " does not exist...\n";
        for (const std::string &line : lines) {
            announced.append("'").append(line, 0, line.rfind(":=")) += "' created in ";
            announced += name + "...\n";
            expected += line + "\n";
        }
    }
    const auto preferences = [] {
        return test::read_file("GLOBAL.prf") + test::read_file("tiffgen.prf");
    };

    const Outcome first = tiffgen({"a.img", "out", "0.0"});
    EXPECT_EQ(test::summary(first), "status 1: " + announced + Banner + Summary);
    EXPECT_EQ(preferences(), expected);

    const std::string picture = test::read_file("out.tif");
    const Outcome second = tiffgen({"a.img", "out", "0.0"});
    EXPECT_EQ(test::summary(second), "status 1: " + Banner + Summary);
    EXPECT_EQ(test::read_file("out.tif"), picture);
    EXPECT_EQ(preferences(), expected);
}

TEST(Usage, IsPrintedForFewerThanThreeArgumentsOnceThePreferencesAreRead)
{
    tiffgen({});
    EXPECT_EQ(test::summary(tiffgen({"a.img", "out"})), "status 255: " + Banner + Usage);
    const Outcome elsewhere = tiffgen({"-pold", "-pown.prf"});
    EXPECT_TRUE(elsewhere.out.starts_with("own.prf does not exist...\n")) << elsewhere.out;
    EXPECT_TRUE(elsewhere.out.ends_with(Usage));
    EXPECT_FALSE(std::filesystem::exists("old"));
}

TEST(ProgramDirectory, IsTheFirstWordUpToItsLastSlash)
{
    std::filesystem::create_directories("bin/in");
    EXPECT_EQ(test::run_program(TIFFGEN, {"bin/in/viewer"}).status, 255);
    EXPECT_TRUE(std::filesystem::exists("bin/in/GLOBAL.prf"));
    EXPECT_TRUE(std::filesystem::exists("bin/in/viewer.prf"));
    const std::string folder_name = "./" + std::string(244, '/');
    EXPECT_EQ(test::summary(test::run_program(TIFFGEN, {folder_name + "viewer"})),
              "status 0: file name too long: " + folder_name + "GLOBAL.prf\n");
}

TEST(Endings, EveryFailureHasItsLineAndStatusZero)
{
    // A run of a.img to out.tif with one thing wrong: a line more in the header, or the arguments.
    // What numbers are refused is in tests/malformed_test.cpp.
    // clang-format off
    const struct {
        const char *header;
        std::vector<std::string> arguments;
        std::string last_line;
    } cases[] = {
        {"", {"a.img", "out", "1", "-s2", "-cnone"}, "Illegal FlagScaleBar"},
        {"", {"a.img", "out", "1", "-g1", "-cnone"}, "Can't open color palette"},
        {"", {"b.img", "out", "1"}, "can't open b.hdr"},
        {"", {"b.img", "out", "1", "-ha.img", "-X0", "-x40000"}, "can't open b.img"},
        {"", {".", "out", "1", "-ha.img"}, "can't read ."},
        {"!pixel scaling value :=0", {"a.img", "out", "1"}, "'pixel scaling value' not defined in a.hdr"},
        {"!imagedata byte order :=native", {"a.img", "out", "1"}, "unspecified byte order in the header"},
        {"!data format 3", {"a.img", "out", "1"}, "can't find a preference value"},
        {"!the right brain on the left :=2\n!the anterior to the posterior :=2\n"
         "!the superior to the inferior :=2\n", {"a.img", "out", "1"}, "internal flag error"},
        {"number of frames :=2147483647", {"a.img", "out", "1", "-b2147483647"},
         "illegal volume (frame 1, bed 2147483647) in a.img"},
        {"", {"a.img", "out", "1", "-X1", "-y65537"},
         "Illegal picture size 3 x 196611 (1 to 32767 pixels each way)"},
        {"", {"a.img", "out", "1", "-X2147483647", "-x2147483647"},
         "Illegal picture size 4611686014132420609 x 2 (1 to 32767 pixels each way)"},
        {"", {"a.img", "none/out", "1"}, "Can't write tiff file"},
    };
    // clang-format on
    for (const auto &row : cases) {
        const test::EmptyFolder folder;
        make_inputs(row.header);
        const Outcome outcome = tiffgen(row.arguments);
        EXPECT_TRUE(test::summary(outcome).starts_with("status 0: ")) << row.last_line;
        EXPECT_TRUE(outcome.out.ends_with("\n" + row.last_line + "\n")) << outcome.out;
        EXPECT_FALSE(std::filesystem::exists("out.tif")) << row.last_line;
    }
}

TEST(Endings, FileNamesThatDoNotFitAbort)
{
    make_inputs();
    const std::string longest(254, 'n');
    EXPECT_TRUE(
        tiffgen({longest, "out", "1", "-ha"}).out.ends_with("can't open " + longest + "\n"));
    const std::vector<std::string> cases[] = {{longest + "n", "out", "1"},
                                              {"a.img", longest.substr(3), "1"},
                                              {"a.img", "out", "1", "-c" + longest + "n"},
                                              {"a.img", "out", "1", "-h" + longest + "n"},
                                              {"-p" + longest + "n"}};
    for (const auto &arguments : cases) {
        EXPECT_TRUE(test::summary(tiffgen(arguments)).starts_with("status 134: "));
    }
}
