#pragma once

#include <cstdint>
#include <initializer_list>

namespace velmorant
{

// What `print_error_message` does, its texts gathered.
[[noreturn]] void report_and_exit(std::int32_t count, std::initializer_list<const char *> texts);

// The one report of every fatal condition: prints the texts on standard output with nothing between
// them, then a line feed, and ends the run with exit status 0. So a failed run ends with 0 and
// a completed one with 1 (see `batchjob`), which is this package's convention and is kept.
//
// count: the number of texts that follow; below 1, only the line feed is printed.
// texts: plain character strings; a message carries its own trailing blank where one is wanted.
template <class... Texts>
[[noreturn]] void print_error_message(std::int32_t count, const Texts *...texts)
{
    report_and_exit(count, {texts...});
}

} // namespace velmorant
