#pragma once

// Runs of programs in which one operation fails, by the library of fuzz/faults.cpp.

#include "tests/support/test.h"

#include <map>

namespace test
{

// The ways in which an operation can fail; of them, those of memory are left out under the sanitizers.
extern const std::vector<std::string> Faults;

// Files of the working directory by their names.
using Files = std::map<std::string, std::string>;

Files files_here();
// Leaves only these files in the working directory.
void restore(const Files &files);

// Runs a program again and again in the same files, a later operation failing each time, until none
// does. Returns how many have failed. check: looks at the outcome and the files; it is told whether the
// fault has happened.
int run_with_faults(const std::string &fault, const std::string &program,
                    const std::vector<std::string> &words, const Files &before,
                    const std::function<void(const Outcome &, bool)> &check);

} // namespace test
