// tiffgen-check: proves a picture whole, or says what a study holds and lacks. See tiffgen-check(1).

#include "companions/picture_check.h"
#include "companions/study_check.h"
#include "companions/tiff_file.h"
#include "prefs/ordinary_run.h"
#include "prefs/process_guard.h"

#include <charconv>
#include <cstdio>
#include <optional>
#include <span>
#include <string_view>

#include <unistd.h>

using namespace velmorant;

using Words = std::span<char *const>;

static constexpr int WrongArguments = 2;

static void print_usage(std::FILE *file)
{
    std::fputs("Usage: tiffgen-check picture FILE.tif [WIDTH HEIGHT]\n"
               "       tiffgen-check study KEYWORD IMAGE\n"
               "       tiffgen-check --help | --version\n"
               "KEYWORD: CTI6, SHORTINT2B, SHORTINT2L, FLOATB or FLOATL\n",
               file);
}

static int refuse_arguments()
{
    print_usage(stderr);
    return WrongArguments;
}

static std::optional<std::uint32_t> parse_size(std::string_view word)
{
    std::uint32_t size = 0;
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), size);
    if (error != std::errc() || end != word.data() + word.size()) {
        return std::nullopt;
    }
    return size;
}

static void compare_sizes(const PictureFacts &facts, std::uint32_t width, std::uint32_t height)
{
    if (facts.width != width || facts.height != height) {
        throw FileFault{"it is " + std::to_string(facts.width) + " x " +
                        std::to_string(facts.height) + " pixels, not " + std::to_string(width) +
                        " x " + std::to_string(height)};
    }
}

// words: the file, and where a size is wanted, width and height.
static int run_picture_check(Words words)
{
    if (words.size() != 1 && words.size() != 3) {
        return refuse_arguments();
    }
    const auto width = parse_size(words.size() == 3 ? words[1] : "0");
    const auto height = parse_size(words.size() == 3 ? words[2] : "0");
    if (!width || !height) {
        return refuse_arguments();
    }
    try {
        const PictureFacts facts = check_picture(words[0]);
        if (words.size() == 3) {
            compare_sizes(facts, *width, *height);
        }
        std::printf("%s: whole, %u x %u pixels, %s\n", words[0], facts.width, facts.height,
                    facts.gray ? "gray" : "colour");
        return std::fflush(stdout) == 0 ? 0 : 1;
    } catch (const FileFault &fault) {
        std::fprintf(stderr, "tiffgen-check: %s: %s\n", words[0], fault.reason.c_str());
        return 1;
    }
}

// words: the keyword and the image.
static int run_study_check(Words words)
{
    if (words.size() != 2) {
        return refuse_arguments();
    }
    // The library's own lines go to standard error.
    std::FILE *report = fdopen(dup(STDOUT_FILENO), "w");
    if (report == nullptr) {
        std::perror("tiffgen-check");
        return 1;
    }
    begin_ordinary_run("tiffgen-check: not a whole study: ", words[1]);
    const bool whole = check_study(words[0], words[1], report, stderr);
    if (std::fclose(report) != 0) {
        std::puts("tiffgen-check: can't write the report");
        return 1;
    }
    return whole ? succeed() : 1;
}

int main(int argc, char **argv)
{
    guard_process();
    const Words words(argv + 1, argc > 0 ? static_cast<std::size_t>(argc) - 1 : 0);
    const std::string_view command = words.empty() ? "" : words[0];
    if (command == "picture") {
        return run_picture_check(words.subspan(1));
    }
    if (command == "study") {
        return run_study_check(words.subspan(1));
    }
    if (command == "--help" && words.size() == 1) {
        print_usage(stdout);
        return 0;
    }
    if (command == "--version" && words.size() == 1) {
        std::printf("tiffgen-check (Velmorant) %s\n", VELMORANT_VERSION);
        return 0;
    }
    return refuse_arguments();
}
