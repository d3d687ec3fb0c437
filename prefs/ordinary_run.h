#pragma once

// Ordinary manners for a program over the image library, which prints its reports on standard output
// and ends a failed run with status 0, or -1 where a block of an ECAT 6 file is missing.

namespace velmorant
{

// Guards the process (prefs/process_guard.h). From here on, all that is printed goes to standard error,
// and the process ends with status 1 and the complaint and the image's name as its last line wherever
// it ends before `succeed`. Both texts have to live as long as the process.
void begin_ordinary_run(const char *complaint, const char *image);

// The status of a run that has come to its end: 0.
int succeed();

} // namespace velmorant
