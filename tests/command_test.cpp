// The built program as its users run it: what it prints, how it ends, which files it leaves.

#include "tests/support/test.h"

#include <sstream>

using test::Outcome;

static const std::string Banner = "\nTIFF FILE GENERATOR (Version 3.1)\n"
                                  "Velmorant tomographic brain image analysis\n"
                                  "by Orlavesk Tarn and the Velmorant developers\n"
                                  "Hollin Centre\n"
                                  "Free software under the MIT licence\n"
                                  "For research, not for diagnosis\n\n";

static const std::string Usage =
    "Command line: (image file) (output file w/o ext.) (max pixel value, 0.0 for peak "
    "normalization) (options)\n"
    "\nOptions:\n"
    "-f(frame); -b(bed position)\n"
    "-x(slice width, pixel)\n"
    "-y(slice height, pixel)\n"
    "-X(Number of columns)\n"
    "-c(\"color palette file\")\n"
    "-m(minimal pixel cutoff)\n"
    "-s(color scale bar: 0=no, 1=yes)\n"
    "-g(gray scale: 0=color, 1=gray)\n"
    "-h(\"common header for image file\")\n"
    "-p(\"local preference file name with directory\")\n"
    "\nOutput:\n"
    "(output file name).tif  - TIFF image file\n";

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
    const std::string global = "Standard Output x Dimension:= 128\n"
                               "Standard Output y Dimension:= 128\n"
                               "Standard Output z Dimension:= 60\n"
                               "Standard Output x Pixel Size:= 2.250000\n"
                               "Standard Output y Pixel Size:= 2.250000\n"
                               "Standard Output z Pixel Size:= 2.250000\n"
                               "Standard Output Acpc Level:= 32.000000\n"
                               "Internal x Dimension:= 128\n"
                               "Internal y Dimension:= 128\n"
                               "Internal z Dimension:= 60\n"
                               "Internal x Pixel Size:= 2.250000\n"
                               "Internal y Pixel Size:= 2.250000\n"
                               "Internal z Pixel Size:= 2.250000\n"
                               "Internal x Center:= 63.500000\n"
                               "Internal y Center:= 63.500000\n"
                               "Internal z Center:= 0.000000\n"
                               "Acpc Center Offset (mm):= -16.000000\n"
                               "Normalized Global Value:= 1000.000000\n"
                               "Peak Threshold for Normalization (%volume):= 0.999000\n"
                               "Lower Threshold for Normalization (%intensity):= 0.400000\n"
                               "Number of Bins for Normalization:= 1024\n"
                               "Maximum Pixel Value in Short Integer:= 32700\n"
                               "Index Value for Out-of-Field:= -10000000000.000000\n"
                               "Check Value for Out-of-Field:= -10000.000000\n"
                               "File Format:= \"FLOATB\"\n";
    const std::string local = "Number of NumColumns:= 10\n"
                              "Height of the Scale (% screen):= 0.500000\n"
                              "Width of the Scale (pixel):= 10\n"
                              "Minimal Pixel Cutoff Value:= 0.000000\n"
                              "Color Palette File:= \"" +
                              std::filesystem::current_path().string() +
                              "/rainbow.plt\"\n"
                              "Color Scale Bar: 0=no, 1=yes:= 0\n"
                              "Gray Scale: 0=color, 1=gray:= 0\n";
    std::string announced;
    for (const auto &[name, lines] : {std::pair{"GLOBAL.prf", global}, {"tiffgen.prf", local}}) {
        announced.append(name).append(" does not exist...\n");
        std::istringstream rows(lines);
        for (std::string line; std::getline(rows, line);) {
            const std::string key = line.substr(0, line.rfind(":="));
            announced.append("'").append(key).append("' created in ").append(name) += "...\n";
        }
    }

    const Outcome first = tiffgen({"a.img", "out", "0.0"});
    EXPECT_EQ(test::summary(first), "status 1: " + announced + Banner + Summary);
    EXPECT_EQ(test::read_file("GLOBAL.prf"), global);
    EXPECT_EQ(test::read_file("tiffgen.prf"), local);

    const std::string picture = test::read_file("out.tif");
    const Outcome second = tiffgen({"a.img", "out", "0.0"});
    EXPECT_EQ(test::summary(second), "status 1: " + Banner + Summary);
    EXPECT_EQ(test::read_file("out.tif"), picture);
    EXPECT_EQ(test::read_file("GLOBAL.prf"), global);
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
    // clang-format off
    const struct {
        const char *header;
        std::vector<std::string> arguments;
        std::string last_line;
    } cases[] = {
        {"", {"a.img", "out", "1", "-s2"}, "Illegal FlagScaleBar"},
        {"", {"a.img", "out", "1", "-s-1", "-cnone"}, "Illegal FlagScaleBar"},
        {"", {"a.img", "out", "1", "-g1", "-cnone"}, "Can't open color palette"},
        {"", {"a.img", "out", "1", "-ca.hdr"}, "Incomplete color palette"},
        {"", {"b.img", "out", "1"}, "can't open b.hdr"},
        {"", {"b.img", "out", "1", "-ha.img"}, "can't open b.img"},
        {"", {".", "out", "1", "-ha.img"}, "can't read ."},
        {"!pixel scaling value :=0", {"a.img", "out", "1"}, "'pixel scaling value' not defined in a.hdr"},
        {"!imagedata byte order :=native", {"a.img", "out", "1"}, "unspecified byte order in the header"},
        {"!data format 3", {"a.img", "out", "1"}, "can't find a preference value"},
        {"!the right brain on the left :=2\n!the anterior to the posterior :=2\n"
         "!the superior to the inferior :=2\n", {"a.img", "out", "1"}, "internal flag error"},
        {"!data format :=4", {"a.img", "out", "1"}, "unspecified or unsupported file format"},
        {"number of slices :=-1", {"a.img", "out", "1"}, "illegal image dimensions 3 x 2 x -1 in a.img"},
        {"", {"a.img", "out", "1", "-f0"}, "illegal volume (frame 0, bed 0) in a.img"},
        {"", {"a.img", "out", "1", "-b-1"}, "illegal volume (frame 1, bed -1) in a.img"},
        {"number of frames :=2147483647", {"a.img", "out", "1", "-b2147483647"},
         "illegal volume (frame 1, bed 2147483647) in a.img"},
        {"!data offset in bytes :=-1", {"a.img", "out", "1"}, "illegal volume (frame 1, bed 0) in a.img"},
        {"", {"a.img", "out", "1", "-X0"}, "Illegal NumColumn: 0"},
        {"", {"a.img", "out", "1", "-x0"}, "Illegal slice_width: 0"},
        {"", {"a.img", "out", "1", "-y-3"}, "Illegal slice_height: -3"},
        {"", {"a.img", "out", "1", "-X2", "-x16384"},
         "Illegal picture size 32768 x 4 (1 to 32767 pixels each way)"},
        {"", {"a.img", "out", "1", "-X1", "-y65537"},
         "Illegal picture size 3 x 196611 (1 to 32767 pixels each way)"},
        {"", {"a.img", "out", "1", "-X2147483647", "-x2147483647"},
         "Illegal picture size 4611686014132420609 x 2 (1 to 32767 pixels each way)"},
        {"number of slices :=0", {"a.img", "out", "1"},
         "Illegal picture size 30 x 0 (1 to 32767 pixels each way)"},
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

TEST(Endings, FormatsAreNamedExactly)
{
    make_inputs();
    for (const std::string name : {"floatb", "cti6", "FLOAT", ""}) {
        test::write_file("GLOBAL.prf", "File Format:= \"" + name + "\"\n");
        EXPECT_TRUE(tiffgen({"a.img", "out", "1"})
                        .out.ends_with("unspecified or unsupported file format\n"));
    }
}

// An ECAT 6 file and a raw one of the same values say the same and make the same picture.
TEST(EcatStudy, BecomesAPictureLikeARawOne)
{
    make_inputs(
        "!matrix size [1] :=20\n!matrix size [2] :=26\n!slice thickness (mm/pixel) :=3.375\n"
        "number of frames :=2\nnumber of beds :=1\n");
    std::string raw;
    for (const auto &[frame, bed] : {std::pair{1, 0}, {2, 0}, {1, 1}, {2, 1}}) {
        raw += test::stored_floats(test::small_ecat_planes(frame, 1, bed), true);
    }
    test::write_file("a.img", raw);
    const std::vector<std::string> run{"a.img", "out", "0.0", "-f2", "-b1", "-g1"};
    tiffgen(run);
    const std::string said = test::summary(tiffgen(run));
    EXPECT_NE(said.find("status 1: "), std::string::npos) << said;
    const std::string picture = test::read_file("out.tif");

    test::EcatFile file = test::small_ecat_study();
    test::write_file("a.img", file.bytes);
    test::write_file("GLOBAL.prf", "File Format:= \"CTI6\"\n");
    tiffgen({});
    EXPECT_EQ(test::summary(tiffgen(run)), said);
    EXPECT_EQ(test::read_file("out.tif"), picture);

    // Frame 3 is not there; a cut file ends where its first missing block is sought.
    EXPECT_TRUE(test::summary(tiffgen({"a.img", "out", "0.0", "-f3"})).starts_with("status 255: "));
    test::write_file("a.img", file.bytes.substr(0, 1000));
    EXPECT_EQ(test::summary(tiffgen(run)),
              "status 255: " + Banner + "fread error in mat_rblk (512 expected, 488 read)...\n");
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
