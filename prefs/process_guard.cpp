#include "prefs/process_guard.h"

#include "prefs/error_report.h"

#include <cerrno>
#include <csignal>
#include <new>

#include <fcntl.h>
#include <unistd.h>

namespace velmorant
{

static bool is_closed(int descriptor)
{
    return fcntl(descriptor, F_GETFD) == -1 && errno == EBADF;
}

static void hold_standard_streams()
{
    // The lowest free number is taken: the stream's own, as those below are open.
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (is_closed(stream)) {
            open("/dev/null", O_RDWR);
        }
    }
}

void guard_process()
{
    hold_standard_streams();
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
    std::set_new_handler([] { print_error_message(1, "can't allocate memory"); });
}

} // namespace velmorant
