#pragma once

#include <string_view>

namespace velmorant
{

// Text that gets into a file whole or not at all: no other run, and no later one, takes a part of
// it for something else.

// Puts a new file in place with all of its text. It is written under the path with "." and six more
// characters after it, and linked to the path then: whoever looks for the file meanwhile finds
// none, or all of it, and of many programs that do so at the same time one succeeds. False, and
// nothing left behind, where there is a file by now, or the place can't hold one or knows no links;
// whoever wants the file then makes it in the ordinary way.
bool create_whole(const char *path, std::string_view text);

// Appends text to the file that is open as `descriptor` (O_APPEND). False where it doesn't get
// there whole. Room for it is reserved first, so that on a full disk, or at a limit of file sizes,
// nobody ever sees a part of it; where a file system can't do that, the part is taken back, unless
// another program has appended something after it.
bool append_whole(int descriptor, std::string_view text);

} // namespace velmorant
