#pragma once

#include "companions/study_report.h"

namespace velmorant
{

// `check_study` for an ECAT 6 matrix file. Every plane that the main header promises, of every gate, has
// to have a matrix in the directory, its subheader and all its pixels in the file, and the size and
// pixel size of the other planes; and a number of its own, which numbers above those that ECAT 6 has
// room for would share with others.
void check_ecat_study(StudyReport &report);

} // namespace velmorant
