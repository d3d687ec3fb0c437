#pragma once

#include <string_view>

namespace velmorant
{

// Puts a new file in place with its whole text at once: whoever looks for it meanwhile finds no file
// or all of it, and of many programs that do so at the same time one succeeds. The text is written
// under the path with "." and the process number after it, and linked to the path then.
// False, and nothing left behind, where there is a file by now, or the place can't hold one or
// knows no links; whoever wants the file then makes it in the ordinary way.
bool create_whole_file(const char *path, std::string_view text);

} // namespace velmorant
