#pragma once

#include <functional>
#include <string>
#include <vector>

namespace test
{

// How a process ended and what it printed.
struct Outcome {
    int status; // exit status, or 128 + the signal that ended it
    std::string out;
    std::string err;
    long peak_kib; // its largest resident memory
};

// Runs a program by its path with the given first word (argv[0]) and arguments.
Outcome run_program(const std::string &path, const std::vector<std::string> &words);

// "status S: OUT", with what appears on standard error in front.
std::string summary(const Outcome &outcome);

// The summary of a shell that runs a command.
std::string shell(const std::string &command);

// Ends a test that needs a program which isn't there.
#define SKIP_WITHOUT(program)                                                                      \
    if (test::shell("command -v " program " >/dev/null") != "status 0: ") {                        \
        GTEST_SKIP() << "there is no " program;                                                    \
    }

// Shell prefix: file permissions apply to the command even for root.
inline const std::string BoundByRights =
    "$(test $(id -u) != 0 || echo setpriv --bounding-set -dac_override) ";

// The summary of a procedure run in a process of its own; where it returns, the status is 77.
std::string ending(const std::function<void()> &procedure);

} // namespace test
