#pragma once

#include <cstdio>
#include <memory>

namespace velmorant
{

struct Close_File {
    void operator()(std::FILE *file) const
    {
        std::fclose(file);
    }
};

// Owns an open file. A file that is read is closed by its handle; a file that is written is closed
// with `close_written`, because only the close tells whether everything arrived.
using File_Handle = std::unique_ptr<std::FILE, Close_File>;

// Opens a file, or ends the run with "can't open " and the path. Mode as fopen takes it.
File_Handle open_or_report(const char *path, const char *mode);

// Closes a file that was written, or ends the run with "can't write " and the path if any write to
// it has failed.
void close_written(File_Handle file, const char *path);

} // namespace velmorant
