#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

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

// Forked processes end without the end of a test, and leave its folder alone.
class EachInAnEmptyFolder : public testing::EmptyTestEventListener
{
    void OnTestStart(const testing::TestInfo & /*test*/) override
    {
        std::string name = std::filesystem::temp_directory_path() / "velmorant-XXXXXX";
        folder = mkdtemp(name.data());
        std::filesystem::current_path(folder);
    }
    void OnTestEnd(const testing::TestInfo & /*test*/) override
    {
        std::filesystem::current_path(before);
        std::filesystem::remove_all(folder);
    }
    std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::path folder;
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
