// One operation after the other fails under the programs, by the library of fuzz/faults.cpp.

#include "tests/support/faults.h"
#include "tests/support/test.h"

#include <cstdlib>

using namespace test;

static const std::vector<std::string> Keywords{"CTI6", "SHORTINT2B", "SHORTINT2L", "FLOATB",
                                               "FLOATL"};

// The files as they are after a run without a fault.
static Files clean_run(const char *program, const std::vector<std::string> &words,
                       const Files &before)
{
    restore(before);
    run_program(program, words);
    return files_here();
}

static Files make_inputs(const std::string &keyword)
{
    restore({{"rainbow.plt", std::string(768, 'p')}});
    run_program(MAKE_PHANTOM, {"make_phantom", keyword, "a.img", "16", "16", "2", "1", "1"});
    return files_here();
}

static bool ends_in_a_known_way(const Outcome &outcome)
{
    const bool said = outcome.out.ends_with("\n") || outcome.out.ends_with("not found...");
    return outcome.err.empty() &&
           (outcome.status == 1 || ((outcome.status == 0 || outcome.status == 255) && said));
}

static int fail_runs(const std::string &keyword, const std::string &gray)
{
    const std::vector<std::string> words{"tiffgen", "a.img", "o", "0.0", "-X2", "-s1", gray};
    Files inputs = make_inputs(keyword);
    inputs["GLOBAL.prf"] = "File Format:= \"" + keyword + "\"\n";
    const Files clean = clean_run(TIFFGEN, words, inputs);
    Files before = clean;
    before.erase("o.tif");
    int failed = 0;
    for (const std::string &fault : Faults) {
        failed += run_with_faults(fault, TIFFGEN, words, before, [&](const Outcome &outcome, bool) {
            EXPECT_TRUE(ends_in_a_known_way(outcome));
            Files after = files_here();
            // Only what is written to a picture, and the memory for it, is lost without a word.
            if (outcome.status == 1 && (fault.starts_with("open") || fault.starts_with("read"))) {
                EXPECT_EQ(after, clean);
            }
            after.erase("o.tif");
            EXPECT_EQ(after, before);
        });
    }
    return failed;
}

// Every format, in colour and in gray.
TEST(Faults, DISABLED_EndEveryRunInAKnownWay)
{
    for (const std::string &keyword : Keywords) {
        EXPECT_GT(fail_runs(keyword, "-g0") + fail_runs(keyword, "-g1"), 300);
    }
}

TEST(Faults, EndARunInAKnownWayAndHarmNothingThatIsRead)
{
    EXPECT_GT(fail_runs("CTI6", "-g0"), 300);
}

TEST(Faults, LeavePreferencesThatTheNextRunCompletes)
{
    const std::vector<std::string> words{"tiffgen", "a.img", "o", "0.0"};
    const Files before = make_inputs("FLOATB");
    const Files clean = clean_run(TIFFGEN, words, before);
    for (const std::string &fault : Faults) {
        run_with_faults(fault, TIFFGEN, words, before, [&](const Outcome &outcome, bool) {
            EXPECT_TRUE(ends_in_a_known_way(outcome));
            setenv("FAULT", "", 1);
            EXPECT_EQ(run_program(TIFFGEN, words).status, 1);
            EXPECT_EQ(files_here(), clean);
        });
    }
}

TEST(Faults, NeverLetAConversionPassForDone)
{
    const Files before = make_inputs("FLOATB");
    for (const std::string &keyword : Keywords) {
        const std::vector<std::string> words{"convert_image", "FLOATB", "a.img", keyword, "o.img"};
        const Files clean = clean_run(CONVERT_IMAGE, words, before);
        for (const std::string &fault : Faults) {
            const auto check = [&](const Outcome &outcome, bool happened) {
                Files after = files_here();
                if (outcome.status == 0) {
                    EXPECT_EQ(after, clean);
                    return;
                }
                EXPECT_TRUE(happened);
                EXPECT_EQ(outcome.status, 1);
                EXPECT_TRUE(outcome.err.ends_with("\nconvert_image: not converted: a.img\n") ||
                            fault.starts_with("write"));
                after.erase("o.img");
                after.erase("o.hdr");
                EXPECT_EQ(after, before);
            };
            run_with_faults(fault, CONVERT_IMAGE, words, before, check);
        }
    }
}
