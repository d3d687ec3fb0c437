#include "prefs/error_report.h"

#include "prefs/end_run.h"

#include <cstdio>

namespace velmorant
{

void report_and_exit(std::int32_t count, std::initializer_list<const char *> texts)
{
    std::int32_t printed = 0;
    for (const char *text : texts) {
        if (printed++ >= count) {
            break;
        }
        std::fputs(text, stdout);
    }
    std::fputc('\n', stdout);
    end_run(0);
}

} // namespace velmorant
