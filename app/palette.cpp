#include "app/palette.h"

#include "prefs/error_report.h"
#include "prefs/file_handle.h"

namespace velmorant
{

void load_palette(const char *path)
{
    const FileHandle file(std::fopen(path, "rb"));
    if (!file) {
        print_error_message(1, "Can't open color palette");
    }
    std::size_t read = 0;
    for (auto *table : {&red, &green, &blue}) {
        read += std::fread(table->data(), 1, table->size(), file.get());
    }
    if (std::ferror(file.get()) != 0) {
        print_error_message(1, "Can't open color palette");
    }
    // The very last byte may be missing: its entry reaches no picture.
    if (read < 3 * PaletteEntries - 1) {
        print_error_message(1, "Incomplete color palette");
    }
}

} // namespace velmorant
