#include "prefs/ordinary_run.h"

#include "prefs/process_guard.h"

#include <cstdlib>

#include <unistd.h>

namespace velmorant
{

static const char *Complaint;
static const char *Image;
static bool Ended;

static void fail_unless_ended()
{
    if (!Ended) {
        std::printf("%s%s\n", Complaint, Image);
        std::fflush(nullptr);
        _exit(EXIT_FAILURE);
    }
}

std::FILE *begin_ordinary_run(const char *complaint, const char *image)
{
    guard_process();
    Complaint = complaint;
    Image = image;
    // Streams that were closed are /dev/null by now.
    std::FILE *output = fdopen(dup(STDOUT_FILENO), "w");
    dup2(STDERR_FILENO, STDOUT_FILENO);
    if (output == nullptr || std::atexit(fail_unless_ended) != 0) {
        std::puts("can't allocate memory");
        fail_unless_ended();
    }
    return output;
}

int end_ordinary_run(int status)
{
    Ended = true;
    return status;
}

} // namespace velmorant
