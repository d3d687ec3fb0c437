#include "prefs/whole_text.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <string>

#include <fcntl.h>
#include <sys/resource.h>
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

// Others may append at the same time.
static constexpr off_t RoomForOthers = 1024;

static bool has_room(int descriptor, off_t length)
{
    struct stat file {
    };
    rlimit limit{};
    if (fstat(descriptor, &file) != 0 || getrlimit(RLIMIT_FSIZE, &limit) != 0) {
        return false;
    }
    length += RoomForOthers;
    if (static_cast<rlim_t>(file.st_size + length) > limit.rlim_cur) {
        return false;
    }
    return fallocate(descriptor, FALLOC_FL_KEEP_SIZE, file.st_size, length) == 0 ||
           (errno != ENOSPC && errno != EDQUOT && errno != EFBIG);
}

bool append_whole(int descriptor, std::string_view text)
{
    if (!has_room(descriptor, static_cast<off_t>(text.size()))) {
        return false;
    }
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
