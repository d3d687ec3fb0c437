#pragma once

#include "tests/support/test.h"

namespace test
{

// The summary of a shell whose first programs are the installed ones, below $INSTALLED; $TIFFGEN is the
// program as it was built. What they make for a while, and the user's preferences, are in the working
// directory.
std::string installed(const std::string &command);

// Makes a raw study in the working directory, a.img with its header: 3 x 2 x 3 floats, 18 values.
void make_study();

} // namespace test
