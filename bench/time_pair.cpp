// time_pair ROUNDS COMMAND... -- COMMAND... [-- COMMAND...]: runs whole commands in turn, so that what
// else the machine does meets them alike, after one round that isn't counted. Their output is thrown
// away.
//
// Prints a line a command, in columns set apart by tabs: the median of its wall time in ms; the
// median of its wall time over the first command's in the same round; its largest resident memory in
// KiB; its status.
//
// Ends with status 0; or with 2 after a message on standard error.

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace
{

struct Command {
    std::vector<char *> words; // with a null at the end
    std::vector<double> seconds;
    std::vector<double> ratios;
    long peak_kib;
    int status;
};

} // namespace

[[noreturn]] static void fail(const char *message)
{
    std::perror(message);
    std::exit(2);
}

// Runs a command once. Returns its wall time.
static double run(Command &command)
{
    const auto start = std::chrono::steady_clock::now();
    const pid_t child = fork();
    if (child < 0) {
        fail("time_pair: fork");
    }
    if (child == 0) {
        const int nothing = open("/dev/null", O_WRONLY | O_CLOEXEC);
        dup2(nothing, STDOUT_FILENO);
        dup2(nothing, STDERR_FILENO);
        execvp(command.words.front(), command.words.data());
        _exit(127);
    }
    rusage usage{};
    int ending = 0;
    if (wait4(child, &ending, 0, &usage) < 0) {
        fail("time_pair: wait4");
    }
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
    command.peak_kib = std::max(command.peak_kib, usage.ru_maxrss);
    command.status = WIFEXITED(ending) ? WEXITSTATUS(ending) : 128 + WTERMSIG(ending);
    return taken.count();
}

static double median(std::vector<double> values)
{
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

static std::vector<Command> read_commands(int argc, char **argv)
{
    std::vector<Command> commands(1);
    for (int i = 2; i < argc; ++i) {
        if (std::string_view(argv[i]) == "--") {
            commands.emplace_back();
        } else {
            commands.back().words.push_back(argv[i]);
        }
    }
    for (Command &command : commands) {
        if (command.words.empty()) {
            std::fputs("Usage: time_pair ROUNDS COMMAND... -- COMMAND... [-- COMMAND...]\n",
                       stderr);
            std::exit(2);
        }
        command.words.push_back(nullptr);
    }
    return commands;
}

int main(int argc, char **argv)
{
    std::vector<Command> commands = read_commands(argc, argv);
    const int rounds = std::max(std::stoi(argv[1]), 1);
    for (int round = 0; round <= rounds; ++round) {
        for (Command &command : commands) {
            const double seconds = run(command);
            if (round > 0) {
                command.seconds.push_back(seconds);
                command.ratios.push_back(seconds / commands.front().seconds.back());
            }
        }
    }
    for (const Command &command : commands) {
        std::printf("%.3f\t%.4f\t%ld\t%d\n", median(command.seconds) * 1e3, median(command.ratios),
                    command.peak_kib, command.status);
    }
}
