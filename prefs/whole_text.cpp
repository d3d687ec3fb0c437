#include "prefs/whole_text.h"

#include <cstdio>
#include <cstdlib>
#include <string>

#include <sys/stat.h>
#include <unistd.h>

namespace velmorant
{

// Writes all of the text, with the rights of any new file.
static bool write_draft(int descriptor, std::string_view text)
{
    const mode_t mask = umask(0);
    umask(mask);
    const bool written =
        fchmod(descriptor, 0666 & ~mask) == 0 &&
        write(descriptor, text.data(), text.size()) == static_cast<ssize_t>(text.size());
    return close(descriptor) == 0 && written;
}

bool create_whole(const char *path, std::string_view text)
{
    std::string draft = std::string(path) + ".XXXXXX";
    const int descriptor = mkstemp(draft.data());
    if (descriptor < 0) {
        return false;
    }
    const bool placed = write_draft(descriptor, text) && link(draft.c_str(), path) == 0;
    std::remove(draft.c_str());
    return placed;
}

bool append_whole(int descriptor, std::string_view text)
{
    const ssize_t written = write(descriptor, text.data(), text.size());
    if (written == static_cast<ssize_t>(text.size())) {
        return true;
    }
    const off_t end = lseek(descriptor, 0, SEEK_CUR);
    struct stat file {
    };
    if (written > 0 && fstat(descriptor, &file) == 0 && file.st_size == end) {
        static_cast<void>(ftruncate(descriptor, end - written) == 0);
    }
    return false;
}

} // namespace velmorant
