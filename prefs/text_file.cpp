#include "prefs/text_file.h"

#include "prefs/error_report.h"

namespace velmorant
{

static constexpr std::int32_t MostLines = 1 << 20;

TextFile::TextFile(const char *file_path) : path(file_path), file(open_or_report(file_path, "r"))
{
}

bool TextFile::read_line(Line &line)
{
    if (fgetsmod(line.data(), static_cast<std::int32_t>(line.size()), file.get()) == nullptr) {
        if (std::ferror(file.get()) != 0) {
            print_error_message(2, "can't read ", path);
        }
        return false;
    }
    if (lines_read++ == MostLines) {
        print_error_message(2, "too many lines in ", path);
    }
    return true;
}

} // namespace velmorant
