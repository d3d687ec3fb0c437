#include "tests/support/files.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>

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

// Every test has an empty working directory of its own. A process that it forks leaves the folder
// alone where it exits, which is why no smart pointer holds it.
class EachInAnEmptyFolder : public testing::EmptyTestEventListener
{
    void OnTestStart(const testing::TestInfo & /*test*/) override
    {
        folder = new test::EmptyFolder;
    }
    void OnTestEnd(const testing::TestInfo & /*test*/) override
    {
        delete folder;
    }
    test::EmptyFolder *folder = nullptr;
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
