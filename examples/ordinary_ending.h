#pragma once

// Ordinary manners for a program over the image library, which prints its reports on standard output
// and ends a failed run with status 0, or -1 where a block of an ECAT 6 file is missing.

#include <string>

namespace examples
{

// From here on, all that is printed goes to standard error, and the process ends with status 1 and
// the complaint as its last line wherever it ends before `succeed`.
void begin(std::string complaint);

// The status of a run that has come to its end: 0.
int succeed();

} // namespace examples
