#include "prefs/regular_file.h"

#include <algorithm>
#include <filesystem>
#include <limits>
#include <system_error>

#include <sys/stat.h>
#include <sys/types.h>

namespace velmorant
{

bool is_special(const char *path)
{
    std::error_code not_there;
    const std::filesystem::file_status status = std::filesystem::status(path, not_there);
    return std::filesystem::exists(status) && !std::filesystem::is_regular_file(status);
}

std::int64_t file_size(std::FILE *stream)
{
    const off_t end = fseeko(stream, 0, SEEK_END) == 0 ? ftello(stream) : 0;
    return std::max(std::int64_t{0}, std::int64_t{end});
}

std::int64_t bytes_to_read(std::FILE *stream)
{
    struct stat status = {};
    // Some file systems make up their files' contents and state a size of 0.
    const bool known =
        fstat(fileno(stream), &status) == 0 && S_ISREG(status.st_mode) && status.st_size > 0;
    return known ? status.st_size : std::numeric_limits<std::int64_t>::max();
}

} // namespace velmorant
