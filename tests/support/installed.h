#pragma once

#include <string>

namespace test
{

// What a shell prints whose first programs are the installed ones, and where everything that they make
// for a while or look for as the user's own is in the working directory.
std::string installed(const std::string &command);

// Makes a raw study in the working directory, a.img with its header: 3 x 2 x 3 floats, 18 values.
void make_study();

} // namespace test
