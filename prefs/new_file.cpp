#include "prefs/new_file.h"

#include "prefs/file_handle.h"

#include <cstdio>
#include <string>
#include <utility>

#include <unistd.h>

namespace velmorant
{

bool create_whole_file(const char *path, std::string_view text)
{
    const std::string draft = std::string(path) + "." + std::to_string(getpid());
    FileHandle file(std::fopen(draft.c_str(), "wx"));
    if (!file) {
        return false;
    }
    std::fwrite(text.data(), 1, text.size(), file.get());
    const bool placed = close_successfully(std::move(file)) && link(draft.c_str(), path) == 0;
    std::remove(draft.c_str());
    return placed;
}

} // namespace velmorant
