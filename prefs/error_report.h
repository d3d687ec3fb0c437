#pragma once

#include <cstdint>
#include <initializer_list>

namespace velmorant
{

// Prints the first `count` of the texts on standard output, one behind the other, and a line feed.
// Ends the process with exit status 0.
[[noreturn]] void report_and_exit(std::int32_t count, std::initializer_list<const char *> texts);

// The one report of every fatal condition: prints the texts on standard output with nothing between
// them, then a line feed, and ends the process with exit status 0. Status 0 for a failure is this
// package's convention (a completed run ends with 1, see `batchjob`); programs that call the
// package tell the two apart by it.
//
// count: the number of texts that follow; below 1, only the line feed is printed.
// texts: plain character strings; a message carries its own trailing blank where one is wanted.
template <class... Texts>
[[noreturn]] void print_error_message(std::int32_t count, const Texts *...texts)
{
    report_and_exit(count, {texts...});
}

} // namespace velmorant
