#include "prefs/regular_file.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

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

} // namespace velmorant
