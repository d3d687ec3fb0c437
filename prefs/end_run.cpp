#include "prefs/end_run.h"

#include <cstdio>
#include <cstdlib>

namespace velmorant
{

void end_run(int status)
{
    std::exit(status);
}

void abort_run()
{
    std::fflush(stdout);
    std::abort();
}

} // namespace velmorant
