#pragma once

#include <cstdio>

// Ordinary manners for a program over the image library, which prints its reports on standard output
// and ends a failed run with status 0, or -1 where a block of an ECAT 6 file is missing.

namespace velmorant
{

// Guards the process (prefs/process_guard.h). From here on, all that is printed goes to standard error,
// and the process ends with status 1 and the complaint and the image's name as its last line wherever
// it ends before `end_ordinary_run`. Both texts have to live as long as the process. Returns a stream to
// what was standard output, for what the program itself has to say.
std::FILE *begin_ordinary_run(const char *complaint, const char *image);

// For a run that has come to its end, and has nothing to complain of any more. Returns the status.
int end_ordinary_run(int status = 0);

} // namespace velmorant
