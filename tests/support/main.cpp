#include "tests/support/files.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <optional>

#include <unistd.h>

static pid_t TestProcess;
static bool AllTestsRan;

// The package ends a failed run with status 0, which a test runner takes for success: a test that
// ends with the code that it tests must not pass. Processes forked by tests end as they like.
static void refuse_early_end()
{
    if (getpid() == TestProcess && !AllTestsRan) {
        std::fflush(nullptr);
        _exit(EXIT_FAILURE);
    }
}

namespace
{

std::optional<test::EmptyFolder> Folder;

// Every test has an empty working directory of its own.
class EachInAnEmptyFolder : public testing::EmptyTestEventListener
{
    void OnTestStart(const testing::TestInfo & /*test*/) override
    {
        Folder.emplace();
    }
    void OnTestEnd(const testing::TestInfo & /*test*/) override
    {
        Folder.reset();
    }
};

} // namespace

int main(int argc, char **argv)
{
    testing::InitGoogleTest(&argc, argv);
    testing::UnitTest::GetInstance()->listeners().Append(new EachInAnEmptyFolder);
    TestProcess = getpid();
    if (std::atexit(refuse_early_end) != 0) {
        return EXIT_FAILURE;
    }
    const int status = RUN_ALL_TESTS();
    AllTestsRan = true;
    return status;
}
