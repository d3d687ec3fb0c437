#pragma once

namespace velmorant
{

// Prints the program's name and version and its credits on standard output. The version is the
// program's own and does not follow the package's.
void print_banner();

} // namespace velmorant
