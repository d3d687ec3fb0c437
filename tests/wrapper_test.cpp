// The installed wrapper: every status, and what it leaves behind.

#include "tests/support/faults.h"
#include "tests/support/installed.h"
#include "tests/support/test.h"

#include <cstdlib>

// Runs the wrapper. Says what it says on standard error and its status; what the program prints is left
// out.
static std::string run(const std::string &words)
{
    return test::installed("tiffgen-run " + words + " >said; status=$?; rm said; exit $status");
}

// The picture that the program itself makes of the study in the working directory.
static std::string plain_picture(const std::string &palette, const std::string &options)
{
    return test::installed("mkdir plain && cd plain && cp \"$TIFFGEN\" tiffgen && cp ../a.* "
                           "\"$INSTALLED/share/velmorant/palettes/" +
                           palette + ".plt\" . && ./tiffgen a.img o 0.0 -c" + palette + ".plt " +
                           options + " >/dev/null; cat o.tif; cd .. && rm -r plain")
        .substr(std::string("status 0: ").size());
}

TEST(Wrapper, MakesThePictureThatTheProgramMakesAndNothingElse)
{
    test::make_study();
    const test::Files before = test::files_here();
    test::Files after = before;
    after["o.tif"] = plain_picture("rainbow", "-s1 -X2");
    const std::string said = test::installed("exec tiffgen-run a.img o 0.0 -s1 -X2");
    EXPECT_TRUE(said.starts_with("status 0: \nTIFF FILE GENERATOR (Version 3.1)\n")) << said;
    EXPECT_TRUE(said.ends_with("Max= 17.000;Min=  0.000;Peak= 15.987;Avg= 11.000\n")) << said;
    EXPECT_TRUE(test::files_here() == after);
    for (const std::string output : {">&-", ">&- 2>&- <&-", ">/dev/full", "| true"}) {
        test::restore(before);
        test::installed("(sleep 0.05; exec tiffgen-run a.img o 0.0 -s1 -X2) " + output);
        EXPECT_TRUE(test::files_here() == after) << output;
    }
}

TEST(Wrapper, HasOrdinaryStatuses)
{
    test::make_study();
    std::string cut = test::small_ecat_study().bytes;
    test::write_file("cut.v", cut.substr(0, 17920));
    cut[512 + 16 + 12 * 16 - 16] = 0; // the last plane's number
    test::write_file("lacking.v", cut);
    test::write_file("less.v", cut);
    test::write_file("cut.img", std::string(71, '1'));
    std::filesystem::copy_file("a.hdr", "cut.hdr");
    test::write_file("a.nii", "no image");
    std::filesystem::create_symlink("a.nii", "nifti.tif");
    test::write_file("short.plt", std::string(100, 'p'));
    const std::string usage = "\nTry 'tiffgen-run --help'.";
    const std::string warning = "lacking.v: matrix (2,3,1,0,1) not found...\n"
                                "lacking.v: CHECK A POSSIBLE PROBLEM IN THE MAIN HEADER...\n"
                                "lacking.v: THE PROGRAM MAY FAIL IN THE FURTHER PROCESSING...\n";
    // clang-format off
    const struct {
        std::string words;
        int status;
        std::string said; // after the wrapper's name
    } cases[] = {
        {"none.img o 0", 1, "none.img: can't open none.hdr"},
        {"a.img o 0 -hnone/h.img", 1, "a.img: can't open none/h.hdr"},
        {"a.img o 0 -cshort.plt", 1, "a.img: Incomplete color palette short.plt"},
        {"--palette none a.img o 0", 1,
         "no palette none, neither a file nor one of those in " INSTALLED "/share/velmorant/palettes"},
        {"--format FLOATB --check-study a.img o 0 -f2", 1, "a.img: there is no frame 2"},
        {"--format FLOATB --check-study cut.img o 0", 1,
         "cut.img: frame 1, bed 0 has 71 of 72 bytes; volumes missing after it: 0"},
        {"a.img a.img/o 0", 1, "a.img: can't write a.img/o.tif: no file can be made there"},
        {"a.img folder 0", 1, "a.img: folder.tif is a folder"},
        {"a.img link 0", 1, "a.img: the output would replace a.hdr"},
        {"--format CTI6 cut.v o 0", 2, "cut.v: fread error in mat_rblk (512 expected, 0 read)..."},
        {"--format=CTI6 lacking.v o 0 -f2 -b1", 2, "lacking.v: matrix (2,3,1,0,1) not found..."},
        {"a.img o", 2, "IMAGE, OUTPUT and MAXIMUM are needed" + usage},
        {"a.img o .", 2, "MAXIMUM is not a number: ." + usage},
        {"'' o 0", 2, "IMAGE has no name" + usage},
        {"a.img o 0 more", 2, "unknown option more" + usage},
        {"a.img o 0 --format CTI6", 2, "this has to stand before IMAGE: --format" + usage},
        {"a.img o 0 -f4294967298", 2, "not a whole number: -f4294967298" + usage},
        {"--format CTI a.img o 0", 2, "unknown format CTI" + usage},
        {"--format", 2, "--format needs a value" + usage},
        {"--check-study a.img o 0", 2, "--check-study needs --format" + usage},
#ifdef VELMORANT_NIFTI
        {"--form sform a.img o 0", 2, "--form and --orientation are for --format NIFTI" + usage},
        {"--format NIFTI a.img o 0", 1, "a.img: no NIfTI-1 or NIfTI-2 image: a.img"},
        {"--format NIFTI a.nii nifti 0", 1, "a.nii: the output would replace a.nii"},
        {"--format NIFTI --orientation RRR a.nii o 0", 2,
         "--orientation takes one letter each of RL, AP and SI, as in RAS" + usage},
#endif
    };
    // clang-format on
    std::filesystem::create_directory("folder.tif");
    std::filesystem::create_symlink("a.hdr", "link.tif");
    for (const auto &row : cases) {
        test::write_file("o.tif", "an older picture");
        EXPECT_EQ(run(row.words), (row.words.find("lacking") == std::string::npos ? "" : warning) +
                                      "tiffgen-run: " + row.said + "\nstatus " +
                                      std::to_string(row.status) + ": ");
        EXPECT_EQ(test::read_file("o.tif"), "an older picture") << row.words;
    }
    EXPECT_EQ(run("a.img o 5 -f2"),
              "a.img: warning: uniform pixel value in the image matrix...\nstatus 0: ");
    EXPECT_EQ(run("--format CTI6 lacking.v o -1.5e3 -m-2"), warning + "status 0: ");
    EXPECT_TRUE(
        test::installed("tiffgen-run --version; tiffgen-run --help")
            .starts_with("status 0: tiffgen-run (Velmorant) " VERSION "\nUsage: tiffgen-run "));
    EXPECT_EQ(test::installed("ls -A | wc -l"), "status 0: 13\n") << "something is left";
}

TEST(Wrapper, KeepsEveryNameSafe)
{
    const std::string deep = std::string(200, 'd') + "/" + std::string(200, 'e');
    std::filesystem::create_directories(deep);
    const std::string back = std::filesystem::current_path();
    test::make_study();
    const std::string picture = plain_picture("pet", "");
    // A working directory and names that are too long for the program.
    std::filesystem::current_path(deep);
    test::make_study();
    test::installed(
        "mkdir c 'my folder'; cp a.img ./--; cp a.hdr ./--.hdr; cp a.img 'my folder/s t.img'; "
        "cp a.hdr 'my folder/s t.hdr'; mv a.img ./-x5.img; mv a.hdr ./-x5.hdr");
    const std::string here = std::filesystem::current_path();
    for (const std::string words :
         {"--palette pet -x5.img -o 0.0", "--palette pet -- -- -o 0.0",
          R"(--palette=pet "$PWD/-x5.img" "$PWD/-o" 0)", "--palette pet 'my folder/s t.img' ./-o 0",
          "--palette pet 'my folder/s t.img' -o 0.0 -h-x5.img",
          "-x5.img -o 0 -c\"$INSTALLED\"/share/velmorant/palettes/pet.plt"}) {
        const std::string said =
            test::installed("export TMPDIR=/tmp; tiffgen-run " + words + " >c/said");
        EXPECT_EQ(said, "status 0: ") << words;
        EXPECT_TRUE(test::read_file("-o.tif") == picture) << words;
        std::filesystem::remove("-o.tif");
    }
    EXPECT_EQ(test::installed("tiffgen-run \"$PWD/none.img\" o 0 >c/said"),
              "tiffgen-run: " + here + "/none.img: can't open " + here + "/none.hdr\nstatus 1: ");
    std::filesystem::current_path(back);
}

TEST(Wrapper, TakesTheUsersOwnPreferences)
{
    test::make_study();
    const std::string gray = plain_picture("rainbow", "-g1");
    const std::string viridis = plain_picture("viridis", "-X1");
    std::filesystem::create_directories("config/velmorant");
    // Neither is complete, and the line of one has no end, which the next key would go on with.
    test::write_file("config/velmorant/GLOBAL.prf", "File Format:= \"FLOATL\"");
    test::write_file("config/velmorant/tiffgen.prf", "Gray Scale: 0=color, 1=gray:= 1");
    EXPECT_EQ(test::installed("tiffgen-run a.img o 0.0").find("created"), std::string::npos);
    EXPECT_TRUE(test::read_file("o.tif") == gray);
    // An option overrides what the file says, and a file that is named the user's own.
    test::write_file("my.prf", "Number of NumColumns:= 1\nColor Palette File:= \"viridis.plt\"\n");
    run("a.img o 0.0 -pmy.prf");
    EXPECT_TRUE(test::read_file("o.tif") == viridis);
    // Palettes of one's own lie beside the preferences.
    std::filesystem::copy_file(INSTALLED "/share/velmorant/palettes/viridis.plt",
                               "config/mine.plt");
    test::write_file("config/my.prf", "\r\nCOLOR palette file = \":= \"mine.plt\"\r\n");
    test::write_file("config/out.prf", "color palette file:=\"mine.tif\"");
    std::filesystem::copy_file("config/mine.plt", "config/mine.tif");
    run("a.img o 0.0 -X1 -pconfig/my.prf");
    EXPECT_TRUE(test::read_file("o.tif") == viridis);
    run("--palette viridis a.img o 0.0 -g0 -X1");
    EXPECT_TRUE(test::read_file("o.tif") == viridis);
    EXPECT_EQ(run("a.img config/mine 0 -pconfig/out.prf"),
              "tiffgen-run: a.img: the output would replace " +
                  std::filesystem::absolute("config/mine.tif").string() + "\nstatus 1: ");
    test::write_file("config/velmorant/GLOBAL.prf", "File Format:= \"CTI\"\n");
    EXPECT_EQ(run("a.img o 0.0"),
              "tiffgen-run: a.img: unspecified or unsupported file format\nstatus 1: ");
    EXPECT_EQ(run("--format SHORTINT2L a.img o 0.0"), "status 0: ");
    EXPECT_TRUE(test::read_file("o.tif") == gray);
    EXPECT_EQ(test::read_file("config/velmorant/GLOBAL.prf"), "File Format:= \"CTI\"\n");
}

// Whatever fails, in whichever of the programs that it calls: a picture is whole, or not there.
TEST(Wrapper, LeavesAWholePictureOrTheOlderOne)
{
    test::make_study();
    const std::vector<std::string> words{"tiffgen-run", "a.img", "o", "0.0"};
    setenv("TMPDIR", std::filesystem::current_path().c_str(), 1);
    test::run_program(INSTALLED "/bin/tiffgen-run", words);
    const test::Files clean = test::files_here();
    test::Files before = clean;
    before["o.tif"] = "an older picture";
    int failed = 0;
    for (const std::string fault :
         {"open error", "read error", "write error", "write short", "seek error"}) {
        failed += test::run_with_faults(
            fault, INSTALLED "/bin/tiffgen-run", words, before,
            [&](const test::Outcome &outcome, bool) {
                if (outcome.status == 0 && outcome.out.empty()) {
                    return; // the shell could read nothing of the wrapper, and did nothing
                }
                EXPECT_TRUE(outcome.status == 0 || outcome.status == 1 || outcome.status == 2);
                EXPECT_EQ(test::files_here(), outcome.status == 0 ? clean : before);
            });
    }
    EXPECT_GT(failed, 30);
    unsetenv("TMPDIR");
}

// A study whose data never come, so that a run of it waits.
static const std::string Waiting = "mkfifo w.img; cp a.hdr w.hdr; ";

TEST(Wrapper, CleansUpWheneverItIsInterrupted)
{
    test::make_study();
    test::installed(Waiting + "echo older >o.tif");
    const std::string left = "a.hdr\na.img\no.tif\nw.hdr\nw.img\nolder\n";
    for (const auto &[signal, status] : {std::pair{"HUP", "129"},
                                         {"INT", "130"},
                                         {"QUIT", "131"},
                                         {"TERM", "143"},
                                         {"XCPU", "152"}}) {
        // In every part of a run; what is still running has its working directory here.
        EXPECT_EQ(test::installed(
                      std::string("ulimit -c 0; for after in 0.001 0.003 0.005 0.008 0.01 "
                                  "0.012 0.015 0.018 0.022 0.03 0.3; do timeout "
                                  "--preserve-status -s ") +
                      signal + " $after tiffgen-run w.img o 0.0 2>/dev/null; test $? = " + status +
                      " || echo $after; done; ls -A; cat o.tif; "
                      "ls -l /proc/*/cwd 2>/dev/null | grep -F \"$PWD/tiffgen-run\""),
                  "status 1: " + left)
            << signal;
    }
}

TEST(Wrapper, SaysThatTheProgramWasEndedByASignal)
{
    test::make_study();
    EXPECT_EQ(test::installed(Waiting + "tiffgen-run w.img o 0.0 & sleep 0.3; "
                                        "read child </proc/$!/task/$!/children; kill -KILL $child; "
                                        "wait $!; echo $?; ls -A"),
              "tiffgen-run: w.img: ended by signal 9\nstatus 0: 137\na.hdr\na.img\nw.hdr\nw.img\n");
}

TEST(Wrapper, RunsManyTimesAtOnce)
{
    test::make_study();
    const std::string picture = plain_picture("rainbow", "");
    // Half of them make the same picture.
    EXPECT_EQ(
        test::installed("for i in 0 1 2 3 4 5 6 7; do for o in o o$i; do (tiffgen-run a.img $o 0.0 "
                        ">/dev/null || echo $?) & done; done; wait; ls -A | tr '\\n' ' '"),
        "status 0: a.hdr a.img o.tif o0.tif o1.tif o2.tif o3.tif o4.tif o5.tif o6.tif o7.tif ");
    EXPECT_TRUE(test::read_file("o.tif") == picture);
    EXPECT_TRUE(test::read_file("o7.tif") == picture);
}
