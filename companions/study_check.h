#pragma once

#include <cstdio>

namespace velmorant
{

// Prints on `facts` what a study says of itself and what each of its whole volumes holds, one thing
// a line: format, size, pixel size, how it is stored, frames and beds, and of each volume the
// smallest and the largest real value. What is missing, too short or unlike the rest goes to
// `faults`, a line each that begins with "tiffgen-check: " and the image's name. Returns whether
// there was nothing of the kind.
//
// Only whole volumes are read, in pieces. What keeps the image library from reading a study's
// header ends the run as the library does.
bool check_study(const char *keyword, const char *image, std::FILE *facts, std::FILE *faults);

} // namespace velmorant
