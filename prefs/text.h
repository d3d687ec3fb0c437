#pragma once

#include <array>
#include <string_view>

namespace velmorant
{

// A text setting or a file name: at most 254 characters and a terminating zero.
using Text = std::array<char, 255>;

// Copies `source` and a terminator into `destination`.
// A source of 255 characters or more aborts the process (SIGABRT), silently but for what was
// printed before. This is how the package treats a file name on the command line that it can't
// hold, and a working directory that leaves no room for the palette's name.
void copy_text_or_abort(Text &destination, std::string_view source);

// The same, but a source that is too long is reported: "file name too long: " and the source.
void copy_text_or_report(Text &destination, std::string_view source);

} // namespace velmorant
