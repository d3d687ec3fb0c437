#pragma once

#include <cstdio>
#include <memory>

namespace velmorant
{

struct CloseFile {
    void operator()(std::FILE *file) const
    {
        std::fclose(file);
    }
};

// Owns an open file. A file that is read is closed by its handle; one that something was written to
// is closed with `close_written`, because only the close tells whether everything arrived.
using FileHandle = std::unique_ptr<std::FILE, CloseFile>;

// Opens a file, or ends the run with "can't open " and the path. Mode as fopen takes it.
FileHandle open_or_report(const char *path, const char *mode);

// Closes a file that was written. False where any write to it has failed.
bool close_successfully(FileHandle file);

// The same, but a failure ends the run with "can't write " and the path.
void close_written(FileHandle file, const char *path);

} // namespace velmorant
