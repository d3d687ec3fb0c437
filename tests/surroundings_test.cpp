// The built program where its surroundings fail it, and where it isn't alone.

#include "tests/support/test.h"

using test::Outcome;
using test::shell;

// Puts the program, a study and a palette into the working directory.
static void make_folder()
{
    std::filesystem::copy_file(TIFFGEN, "tiffgen");
    test::write_file("rainbow.plt", std::string(768, 'p'));
    test::write_file("a.hdr", test::text_header());
    test::write_file("a.img", test::stored_floats(std::vector(18, 1.0F), true));
}

static std::string preferences()
{
    return test::read_file("GLOBAL.prf") + test::read_file("tiffgen.prf");
}

TEST(Surroundings, OutputThatNobodyTakesStopsNoFirstRun)
{
    make_folder();
    shell("./tiffgen a.img o 0.0");
    const std::string files = preferences() + test::read_file("o.tif");
    for (const std::string output : {">&-", ">&- 2>&- <&-", ">/dev/full", "| true"}) {
        shell("rm -f *.prf o.tif");
        EXPECT_EQ(
            shell("(sleep 0.1; ./tiffgen a.img o 0.0; echo $? >status) " + output + "; cat status"),
            "status 0: 1\n");
        EXPECT_TRUE(preferences() + test::read_file("o.tif") == files) << output;
    }
}

TEST(Surroundings, FilesThatCanNotGrowAreLostWithoutAPart)
{
    make_folder();
    const auto limited = [](const std::string &blocks) {
        return shell("(ulimit -f " + blocks + "; ./tiffgen a.img o 0 -x1000; echo $?) | tail -n 2");
    };
    const std::string lost = "status 0: can't write ./GLOBAL.prf\n0\n";
    EXPECT_EQ(limited("0"), lost);
    EXPECT_EQ(test::read_file("GLOBAL.prf"), "");
    // A line that would be cut, and read as another value by then, is not begun.
    test::write_file("GLOBAL.prf", std::string(470, '\n'));
    EXPECT_EQ(limited("1"), lost);
    EXPECT_EQ(test::read_file("GLOBAL.prf"), std::string(470, '\n'));
    shell("./tiffgen a.img o 0.0 -x1000");
    EXPECT_TRUE(limited("1").ends_with("\n1\n")) << "a cut picture is not reported";
}

TEST(Surroundings, AFolderThatCanNotBeWrittenIsReported)
{
    make_folder();
    const std::string run =
        "chmod 555 .; " + test::BoundByRights + "./tiffgen a.img o 0.0; echo $?; chmod 755 .";
    EXPECT_EQ(shell(run),
              "status 0: ./GLOBAL.prf does not exist...\ncan't create ./GLOBAL.prf\n0\n");
    shell("./tiffgen");
    EXPECT_TRUE(shell(run).ends_with("\nCan't write tiff file\n0\n"));
}

TEST(Surroundings, APictureDoesNotReplaceWhatIsRead)
{
    make_folder();
    shell("./tiffgen");
    const std::string palette = std::filesystem::current_path().string() + "/rainbow.plt";
    for (const std::string file :
         {"a.img", "a.hdr", palette.c_str(), "./tiffgen.prf", "./GLOBAL.prf"}) {
        const std::string before = test::read_file(file);
        EXPECT_TRUE(shell("ln -sf " + file + " o.tif; ./tiffgen a.img o 1")
                        .ends_with("\nthe output would replace " + file + "\n"));
        EXPECT_EQ(test::read_file(file), before);
    }
    // An image that lends its header alone isn't read.
    shell("ln -sf b.img o.tif; touch b.img; cp a.hdr b.hdr");
    EXPECT_TRUE(shell("./tiffgen a.img o 1 -hb.img; echo $?").ends_with("\n1\n"));
}

#ifndef SANITIZED
TEST(Memory, IsBoundedWhateverTheVolume)
{
    make_folder();
    // 250 million pixels, of which a thousandth is just what the survey keeps; in a file without blocks.
    test::write_file("a.hdr", test::text_header("matrix size [1] :=500\nmatrix size [2] :=500\n"
                                                "number of slices :=1000\n!data format :=2\n"));
    std::filesystem::resize_file("a.img", 500000000);
    constexpr long most = 16384; // KiB
    const Outcome picture =
        test::run_program(TIFFGEN, {"tiffgen", "a.img", "o", "0.0", "-x1", "-y1"});
    EXPECT_EQ(picture.status, 1) << picture.out;
    EXPECT_LE(picture.peak_kib, most);
    const Outcome check = test::run_program(TIFFGEN_CHECK, {"c", "study", "FLOATB", "a.img"});
    EXPECT_EQ(check.status, 0) << check.err;
    EXPECT_LE(check.peak_kib, most);
}
#endif

// Sixteen first runs at a time, again and again.
static void run_together(int rounds)
{
    make_folder();
    shell("./tiffgen a.img o 0.0");
    const std::string expected = preferences() + test::read_file("o.tif");
    for (int round = 0; round < rounds; ++round) {
        ASSERT_EQ(
            shell("mv o.tif o; rm *.prf; all='0 1 2 3 4 5 6 7 8 9 a b c d e f'; for i in $all; do "
                  "(./tiffgen a.img o$i 0.0 >/dev/null; test $? = 1 || echo $i) & done; wait; "
                  "for i in $all; do cmp o o$i.tif; rm o$i.tif; done; mv o o.tif; ls -A"),
            "status 0: GLOBAL.prf\na.hdr\na.img\no.tif\nrainbow.plt\ntiffgen\ntiffgen.prf\n");
        ASSERT_TRUE(preferences() + test::read_file("o.tif") == expected);
    }
}

TEST(FirstRuns, AtTheSameTimeSeeAndLeaveWholePreferences)
{
    run_together(10);
}

TEST(FirstRuns, DISABLED_AtTheSameTimeManyTimesOver)
{
    run_together(1000);
}
