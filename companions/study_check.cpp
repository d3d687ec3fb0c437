#include "companions/study_check.h"

#include "companions/ecat_study.h"
#include "companions/raw_study.h"

#include <string_view>

namespace velmorant
{

bool check_study(const char *keyword, const char *image, std::FILE *facts, std::FILE *faults)
{
    StudyReport study{.keyword = keyword, .image = image, .facts = facts, .faults = faults};
    if (std::string_view(keyword) == "CTI6") {
        check_ecat_study(study);
    } else {
        check_raw_study(study);
    }
    return study.whole;
}

} // namespace velmorant
