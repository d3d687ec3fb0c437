#include "prefs/error_report.h"

#include <cstdio>
#include <cstdlib>

namespace velmorant
{

void report_and_exit(std::int32_t count, std::initializer_list<const char *> texts)
{
    for (const char *text : texts) {
        if (count-- < 1) {
            break;
        }
        std::fputs(text, stdout);
    }
    std::fputc('\n', stdout);
    std::exit(EXIT_SUCCESS);
}

} // namespace velmorant
