#pragma once

#include "prefs/file_handle.h"
#include "prefs/preference_line.h"

#include <cstdint>

namespace velmorant
{

// A preference file or text header that is read line by line.
class TextFile
{
public:
    // Ends the run with "can't open " and the path. The path has to live as long as the file.
    explicit TextFile(const char *file_path);

    // Reads the next line as `fgetsmod` does; false at the end of the file. Ends the run with
    // "can't read " and the path on a read error: what follows there is not known to be missing.
    // More than 2^20 lines are no text of this package but a device that never ends, say, and end
    // the run with "too many lines in " and the path.
    bool read_line(Line &line);

private:
    const char *path;
    FileHandle file;
    std::int32_t lines_read = 0;
};

} // namespace velmorant
