#include "tests/support/faults.h"

#include <cstdlib>

namespace test
{

const std::vector<std::string> Faults{
    "open error",       "open interrupted",  "read error",  "read interrupted", "read short",
    "write error",      "write interrupted", "write short", "seek error",       "close error",
#ifndef SANITIZED
    "allocate error",
#endif
    "close interrupted"};

Files files_here()
{
    Files files;
    for (const auto &entry : std::filesystem::directory_iterator(".")) {
        files[entry.path().filename()] = read_file(entry.path());
    }
    return files;
}

void restore(const Files &files)
{
    for (const auto &entry : std::filesystem::directory_iterator(".")) {
        std::filesystem::remove_all(entry.path());
    }
    for (const auto &[name, bytes] : files) {
        write_file(name, bytes);
    }
}

int run_with_faults(const std::string &fault, const std::string &program,
                    const std::vector<std::string> &words, const Files &before,
                    const std::function<void(const Outcome &, bool)> &check)
{
    // By its name and its folder: a path to preload would end at a blank.
    const char *folders = std::getenv("LD_LIBRARY_PATH");
    const std::string before_faults = folders != nullptr ? folders : "";
    setenv("LD_LIBRARY_PATH", (FAULTS ":" + before_faults).c_str(), 1);
    setenv("LD_PRELOAD", "libfaults.so", 1);
    setenv("FAULT_MARK", std::filesystem::absolute("mark").c_str(), 1);
    int number = 0;
    for (bool happened = true; happened && !testing::Test::HasFailure();) {
        restore(before);
        setenv("FAULT", (fault + " " + std::to_string(++number)).c_str(), 1);
        const Outcome outcome = run_program(program, words);
        happened = std::filesystem::remove("mark");
        SCOPED_TRACE(fault + " " + std::to_string(number) + ": " + summary(outcome));
        check(outcome, happened);
    }
    unsetenv("LD_PRELOAD");
    setenv("LD_LIBRARY_PATH", before_faults.c_str(), 1);
    return number - 1;
}

} // namespace test
