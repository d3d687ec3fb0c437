#include "tests/support/test.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace test
{

void write_file(const std::string &name, const std::string &bytes)
{
    std::ofstream(name, std::ios::binary) << bytes;
}

std::string read_file(const std::string &name)
{
    std::ifstream file(name, std::ios::binary);
    EXPECT_TRUE(file.is_open()) << name;
    return {std::istreambuf_iterator<char>(file), {}};
}

static Outcome run_apart(const std::function<void()> &procedure)
{
    const std::string capture =
        std::filesystem::temp_directory_path() / ("velmorant-" + std::to_string(getpid()));
    const std::string out = capture + ".out";
    const std::string err = capture + ".err";
    std::fflush(nullptr);
    const pid_t child = fork();
    if (child == 0) {
        if (std::freopen(out.c_str(), "w", stdout) && std::freopen(err.c_str(), "w", stderr)) {
            procedure();
        }
        std::exit(77);
    }
    int status = 0;
    rusage used{};
    EXPECT_EQ(wait4(child, &status, 0, &used), child);
    Outcome outcome{WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status),
                    read_file(out), read_file(err), used.ru_maxrss};
    std::filesystem::remove(out);
    std::filesystem::remove(err);
    return outcome;
}

Outcome run_program(const std::string &path, const std::vector<std::string> &words)
{
    return run_apart([&] {
        std::vector<char *> argv;
        argv.reserve(words.size() + 1);
        for (const std::string &word : words) {
            argv.push_back(const_cast<char *>(word.c_str()));
        }
        argv.push_back(nullptr);
        execv(path.c_str(), argv.data());
    });
}

std::string summary(const Outcome &outcome)
{
    return outcome.err + "status " + std::to_string(outcome.status) + ": " + outcome.out;
}

std::string shell(const std::string &command)
{
    return summary(run_program("/bin/sh", {"sh", "-c", command}));
}

std::string ending(const std::function<void()> &procedure)
{
    return summary(run_apart(procedure));
}

} // namespace test
