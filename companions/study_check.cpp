#include "companions/study_check.h"

#include "companions/ecat_study.h"
#include "companions/raw_study.h"
#include "image/format_dispatch.h"
#include "prefs/regular_file.h"

#include <string_view>

namespace velmorant
{

bool check_study(const char *keyword, const char *image, std::FILE *facts, std::FILE *faults)
{
    StudyReport study{.keyword = keyword, .image = image, .facts = facts, .faults = faults};
    for (const std::string &file : image_files(image, keyword)) {
        if (is_special(file.c_str())) {
            report_fault(study, file + " is not a regular file");
            return false;
        }
    }
    if (std::string_view(keyword) == "CTI6") {
        check_ecat_study(study);
    } else {
        check_raw_study(study);
    }
    return study.whole;
}

} // namespace velmorant
