// tiffgen-check: proves a picture whole, or says what a study holds and lacks. See tiffgen-check(1).

#include "companions/picture_check.h"
#include "companions/study_check.h"
#include "companions/tiff_file.h"
#include "prefs/ordinary_run.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>
#include <optional>
#include <span>
#include <string_view>

using namespace velmorant;

using Words = std::span<char *const>;

static constexpr int CheckFailed = 1;
static constexpr int WrongArguments = 2;

static constexpr std::array<std::string_view, 5> Keywords{"CTI6", "SHORTINT2B", "SHORTINT2L",
                                                          "FLOATB", "FLOATL"};

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

// Ends a run whose findings have all been said. Closes the report.
static int end_run_with(int status, std::FILE *report)
{
    if (std::fclose(report) != 0) {
        std::fputs("tiffgen-check: can't write to standard output\n", stderr);
        status = CheckFailed;
    }
    return end_ordinary_run(status);
}

// words: the file, and where a size is wanted, width and height.
static int run_picture_check(Words words)
{
    if (words.size() != 1 && words.size() != 3) {
        return refuse_arguments();
    }
    const bool sized = words.size() == 3;
    const auto width = parse_size(sized ? words[1] : "0");
    const auto height = parse_size(sized ? words[2] : "0");
    if (!width || !height) {
        return refuse_arguments();
    }
    const char *path = words[0];
    std::FILE *report = begin_ordinary_run("tiffgen-check: not checked: ", path);
    try {
        const PictureFacts facts = check_picture(path);
        if (sized) {
            compare_sizes(facts, *width, *height);
        }
        std::fprintf(report, "%s: whole, %u x %u pixels, %s\n", path, facts.width, facts.height,
                     facts.gray ? "gray" : "colour");
        return end_run_with(0, report);
    } catch (const FileFault &fault) {
        std::fprintf(stderr, "tiffgen-check: %s: %s\n", path, fault.reason.c_str());
        return end_run_with(CheckFailed, report);
    }
}

// words: the keyword and the image.
static int run_study_check(Words words)
{
    if (words.size() != 2 || std::ranges::find(Keywords, words[0]) == Keywords.end()) {
        return refuse_arguments();
    }
    const char *image = words[1];
    std::FILE *report = begin_ordinary_run("tiffgen-check: not a whole study: ", image);
    if (!check_study(words[0], image, report, stderr)) {
        std::fprintf(stderr, "tiffgen-check: not a whole study: %s\n", image);
        return end_run_with(CheckFailed, report);
    }
    return end_run_with(0, report);
}

int main(int argc, char **argv)
{
    const Words words(argv + 1, argc > 0 ? static_cast<std::size_t>(argc) - 1 : 0);
    const std::string_view command = words.empty() ? "" : words[0];
    if (command == "picture") {
        return run_picture_check(words.subspan(1));
    }
    if (command == "study") {
        return run_study_check(words.subspan(1));
    }
    if (words.size() != 1 || (command != "--help" && command != "--version")) {
        return refuse_arguments();
    }
    if (command == "--help") {
        print_usage(stdout);
    } else {
        std::printf("tiffgen-check (Velmorant) %s\n", VELMORANT_VERSION);
    }
    return std::fflush(stdout) == 0 ? 0 : CheckFailed;
}
