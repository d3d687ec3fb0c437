// The built program as its users run it: what it prints, how it ends, which files it leaves.

#include "tests/support/test.h"

#include <sstream>

using test::Outcome;

static const std::string Banner = "\nTIFF FILE GENERATOR (Version 3.1)\n"
                                  "Velmorant tomographic brain image analysis\n"
                                  "by Orlavesk Tarn and the Velmorant developers\nHollin Centre\n"
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
static void make_inputs()
{
    test::write_file("rainbow.plt", std::string(768, 'p'));
    test::write_file("a.hdr", test::text_header());
    test::write_file("a.img", test::stored_floats({16, 32, 48, 64, 80, 96, 112, 128, 144, 160, 176,
                                                   192, 208, 224, 240, 255, 10, 20},
                                                  true));
}

// What a first run writes.
static const std::string Global =
    "Standard Output x Dimension:= 128\nStandard Output y Dimension:= 128\n"
    "Standard Output z Dimension:= 60\nStandard Output x Pixel Size:= 2.250000\n"
    "Standard Output y Pixel Size:= 2.250000\nStandard Output z Pixel Size:= 2.250000\n"
    "Standard Output Acpc Level:= 32.000000\nInternal x Dimension:= 128\n"
    "Internal y Dimension:= 128\nInternal z Dimension:= 60\nInternal x Pixel Size:= 2.250000\n"
    "Internal y Pixel Size:= 2.250000\nInternal z Pixel Size:= 2.250000\n"
    "Internal x Center:= 63.500000\nInternal y Center:= 63.500000\n"
    "Internal z Center:= 0.000000\nAcpc Center Offset (mm):= -16.000000\n"
    "Normalized Global Value:= 1000.000000\nPeak Threshold for Normalization (%volume):= 0.999000\n"
    "Lower Threshold for Normalization (%intensity):= 0.400000\n"
    "Number of Bins for Normalization:= 1024\nMaximum Pixel Value in Short Integer:= 32700\n"
    "Index Value for Out-of-Field:= -10000000000.000000\n"
    "Check Value for Out-of-Field:= -10000.000000\nFile Format:= \"FLOATB\"\n";

static std::string local_preferences()
{
    return "Number of NumColumns:= 10\nHeight of the Scale (% screen):= 0.500000\n"
           "Width of the Scale (pixel):= 10\nMinimal Pixel Cutoff Value:= 0.000000\n"
           "Color Palette File:= \"" +
           std::filesystem::current_path().string() +
           "/rainbow.plt\"\nColor Scale Bar: 0=no, 1=yes:= 0\nGray Scale: 0=color, 1=gray:= 0\n";
}

// What a first run says of a new preference file.
static std::string announced(const std::string &name, const std::string &text)
{
    std::string said = name + " does not exist...\n";
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        said += "'" + line.substr(0, line.rfind(":=")) + "' created in " + name + "...\n";
    }
    return said;
}

TEST(FirstRun, CreatesCompletePreferenceFilesAndGoesOn)
{
    make_inputs();
    const std::string local = local_preferences();
    std::string said = announced("GLOBAL.prf", Global) + announced("tiffgen.prf", local);
    for (int turn = 0; turn < 2; ++turn) {
        EXPECT_EQ(test::summary(tiffgen({"a.img", "out", "0.0"})),
                  "status 1: " + said + Banner + Summary);
        EXPECT_EQ(test::read_file("GLOBAL.prf"), Global);
        EXPECT_EQ(test::read_file("tiffgen.prf"), local);
        said.clear();
    }
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

TEST(Endings, FileNamesThatDoNotFitAbort)
{
    make_inputs();
    const std::string longest(254, 'n');
    EXPECT_TRUE(
        tiffgen({longest, "out", "1", "-ha"}).out.ends_with("can't open " + longest + "\n"));
    for (const std::vector<std::string> &arguments :
         {std::vector<std::string>{longest + "n", "out", "1"},
          {"a.img", longest.substr(3), "1"},
          {"a.img", "out", "1", "-c" + longest + "n"},
          {"a.img", "out", "1", "-h" + longest + "n"},
          {"-p" + longest + "n"}}) {
        EXPECT_TRUE(test::summary(tiffgen(arguments)).starts_with("status 134: "));
    }
}
