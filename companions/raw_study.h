#pragma once

#include "companions/study_report.h"

namespace velmorant
{

// `check_study` for a raw volume with a text header. Its data file has to be as long as its header's
// volumes, all frames of all beds; what follows them is stated, and no fault.
void check_raw_study(StudyReport &report);

} // namespace velmorant
