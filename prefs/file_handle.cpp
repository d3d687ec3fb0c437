#include "prefs/file_handle.h"

#include "prefs/error_report.h"

#include <utility>

namespace velmorant
{

FileHandle open_or_report(const char *path, const char *mode)
{
    FileHandle file(std::fopen(path, mode));
    if (!file) {
        print_error_message(2, "can't open ", path);
    }
    return file;
}

bool close_successfully(FileHandle file)
{
    const bool failed = std::ferror(file.get()) != 0;
    return std::fclose(file.release()) == 0 && !failed;
}

void close_written(FileHandle file, const char *path)
{
    if (!close_successfully(std::move(file))) {
        print_error_message(2, "can't write ", path);
    }
}

} // namespace velmorant
