#pragma once

#include "companions/study_report.h"

namespace velmorant
{

// `check_study` for an ECAT 6 matrix file. Every plane that the main header promises, of every gate, has
// to have a matrix in the directory, its subheader and all its pixels in the file, in blocks that no
// other plane has, and the size and pixel size of the first plane; and a number of its own, which
// coordinates above those that ECAT 6 has room for would share with others. A gated study, which the
// generator doesn't show, is a fault, too. Of a directory that leads out of the file, what is in it counts.
void check_ecat_study(StudyReport &report);

} // namespace velmorant
