// Programs that are built on the installed library, and what else is installed.

#include "tests/support/installed.h"
#include "tests/support/test.h"

static const std::string Summary = "XD=  3;YD=  2;SL= 3;PX=2.000;PY=2.000;PZ=4.000;F= 1;B=0\n";

// As `installed`, with what a program is built with, and an installation that was moved: $MOVED.
static std::string build(const std::string &command)
{
    for (const auto &[name, value] : {std::pair{"CXX", CXX},
                                      {"CMAKE", CMAKE},
                                      {"CMAKE_GENERATOR", GENERATOR},
                                      {"MAKE_PROGRAM", MAKE_PROGRAM},
                                      {"SIBLING", SIBLING}}) {
        setenv(name, value, 1);
    }
    return test::installed("MOVED=\"$PWD/moved here\"; cp -r \"$INSTALLED\" \"$MOVED\"; " +
                           command);
}

TEST(InstalledLibrary, IsFoundByCmake)
{
    test::make_study();
    EXPECT_EQ(build("{ \"$CMAKE\" -S \"$SIBLING\" -B b \"-DCMAKE_MAKE_PROGRAM=$MAKE_PROGRAM\" "
                    "\"-DCMAKE_PREFIX_PATH=$MOVED\" && \"$CMAKE\" --build b; } >log 2>&1 || "
                    "cat log; b/sibling FLOATB a.img"),
              "status 0: " + Summary);
}

#ifndef SANITIZED // whose flags are no part of the package
TEST(InstalledLibrary, IsFoundByPkgConfig)
{
    SKIP_WITHOUT("pkg-config");
    test::make_study();
    EXPECT_EQ(build("PKG_CONFIG_PATH=$(echo \"$MOVED\"/lib*/pkgconfig) && "
                    "export PKG_CONFIG_PATH && pkg-config --modversion velmorant && "
                    "eval \"set -- $(pkg-config --cflags --libs velmorant)\" && \"$CXX\" "
                    "-std=c++20 \"$SIBLING\"/sibling.cpp -o sibling \"$@\" && "
                    "./sibling FLOATB a.img"),
              "status 0: " VERSION "\n" + Summary);
}
#endif

TEST(InstalledLibrary, HasEveryHeaderThatItsHeadersInclude)
{
    EXPECT_EQ(build("cd \"$INSTALLED\"/include/velmorant && for header in */*.h; do "
                    "echo \"#include <$header>\"; done | \"$CXX\" "
                    "-std=c++20 -I. -Wall -Wextra -Werror -fsyntax-only -x c++ -"),
              "status 0: ");
}

TEST(InstalledFiles, HoldCompletePreferencesAndPalettes)
{
    test::make_study();
    const std::string share = INSTALLED "/share/velmorant/";
    test::installed("cp \"$TIFFGEN\" tiffgen; ./tiffgen >/dev/null");
    std::string expected = test::read_file("tiffgen.prf");
    const std::string default_palette = std::filesystem::current_path().string() + "/rainbow.plt";
    expected.replace(expected.find(default_palette), default_palette.size(), "rainbow.plt");
    EXPECT_EQ(test::read_file(share + "preferences/tiffgen.prf"), expected);
    EXPECT_EQ(test::read_file(share + "preferences/GLOBAL.prf"), test::read_file("GLOBAL.prf"));
    EXPECT_EQ(test::read_file(share + "palettes/rainbow.plt").size(), 768U);
}

TEST(InstalledFiles, WorkWhereTheyWereMoved)
{
    test::make_study();
    const std::string moved = std::filesystem::current_path().string() + "/it's ü";
    test::installed("cp -r \"$INSTALLED\" \"it's ü\"; ln -s \"it's ü/bin/tiffgen-run\" run");
    test::installed("tiffgen-run a.img o 0");
    for (const std::string program : {"\"it's ü\"/bin/tiffgen-run", "sh ./run"}) {
        EXPECT_EQ(test::installed(program + " --palette rainbow a.img p 0 >said; cmp o.tif p.tif"),
                  "status 0: ");
    }
    // As they are where NIfTI images are left out.
    EXPECT_EQ(test::installed("rm -f \"it's ü/bin/nifti-to-raw\"; ./run --help | grep -i nifti; "
                              "./run --format NIFTI a.nii o 0"),
              "tiffgen-run: no NIfTI images are read here: there is no " + moved +
                  "/bin/nifti-to-raw\nTry 'tiffgen-run --help'.\nstatus 2: ");
    EXPECT_EQ(test::installed("rm -r \"it's ü/share\"; ./run a.img p 0"),
              "tiffgen-run: a.img: this installation lacks " + moved +
                  "/bin/../share/velmorant/preferences/tiffgen.prf\nstatus 1: ");
}

// What bash makes of a command line whose last word is to be completed.
static std::string complete(const std::string &function, const std::string &words)
{
    return test::installed(
        "bash -c '. \"$INSTALLED\"/share/bash-completion/completions/tiffgen-run; COMP_WORDS=(" +
        words + "); COMP_CWORD=$((${#COMP_WORDS[@]} - 1)); " + function +
        R"(; printf "%s\n" "${COMPREPLY[@]}" | sort')");
}

TEST(InstalledFiles, CompleteCommandLines)
{
    SKIP_WITHOUT("bash");
    test::make_study();
    std::filesystem::create_directory("my studies");
    // clang-format off
    const struct {
        std::string function;
        std::string words;
        std::string completed;
    } cases[] = {
        {"_tiffgen", "tiffgen a", "a.hdr\na.img\n"},
        {"_tiffgen", "tiffgen a.img o 0 -hmy", "-hmy\\ studies/\n"},
        {"_tiffgen", "tiffgen a.img o 0 -s", "-s0\n-s1\n"},
        {"_tiffgen_run", "tiffgen-run --format SH", "SHORTINT2B\nSHORTINT2L\n"},
        {"_tiffgen_run", "tiffgen-run --format = C", "CTI6\n"},
        {"_tiffgen_run", "tiffgen-run --palette vi", "viridis\n"},
        {"_tiffgen_run", "tiffgen-run --palette pet a.i", "a.img\n"},
#ifdef VELMORANT_NIFTI
        {"_tiffgen_run", "tiffgen-run --format N", "NIFTI\n"},
#else
        {"_tiffgen_run", "tiffgen-run --format N", "\n"},
#endif
        {"_tiffgen_check", "tiffgen-check s", "study\n"},
        {"_nifti_to_raw", "nifti-to-raw --form = s", "sform\n"},
    };
    // clang-format on
    for (const auto &row : cases) {
        EXPECT_EQ(complete(row.function, row.words), "status 0: " + row.completed) << row.words;
    }
}
