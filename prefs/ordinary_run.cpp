#include "prefs/ordinary_run.h"

#include "prefs/process_guard.h"

#include <cstdio>
#include <cstdlib>

#include <unistd.h>

namespace velmorant
{

static const char *Complaint;
static const char *Image;
static bool Succeeded;

static void fail_unless_succeeded()
{
    if (!Succeeded) {
        std::printf("%s%s\n", Complaint, Image);
        std::fflush(nullptr);
        _exit(EXIT_FAILURE);
    }
}

void begin_ordinary_run(const char *complaint, const char *image)
{
    velmorant::guard_process();
    Complaint = complaint;
    Image = image;
    // Where standard error was closed, what is printed goes nowhere.
    dup2(STDERR_FILENO, STDOUT_FILENO);
    if (std::atexit(fail_unless_succeeded) != 0) {
        fail_unless_succeeded();
    }
}

int succeed()
{
    Succeeded = true;
    return EXIT_SUCCESS;
}

} // namespace velmorant
