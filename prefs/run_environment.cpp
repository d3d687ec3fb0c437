#include "prefs/run_environment.h"

#include "prefs/end_run.h"
#include "prefs/error_report.h"
#include "prefs/file_handle.h"

#include <cstring>
#include <string>
#include <string_view>

#include <unistd.h>

namespace velmorant
{

char *get_program_directory(const char *program_path, Text &directory_out)
{
    const std::string_view path(program_path);
    const std::size_t slash = path.rfind('/');
    if (slash == std::string_view::npos) {
        directory_out.front() = '\0';
        return nullptr;
    }
    copy_text_or_report(directory_out, path.substr(0, slash + 1));
    return directory_out.data();
}

char *get_current_directory(char *buffer, std::size_t size)
{
    if (getcwd(buffer, size) == nullptr) {
        print_error_message(1, "can't get directory path");
    }
    const std::size_t length = std::strlen(buffer);
    buffer[length] = '/';
    buffer[length + 1] = '\0';
    return buffer;
}

bool batch_status()
{
    return FileHandle(std::fopen("BATCH_JOB_ACTIVE", "r")) != nullptr;
}

void batchjob()
{
    end_run(1);
}

void add_quotations(Text &text)
{
    const std::string plain(text.data());
    if (plain.size() >= 253) {
        print_error_message(1, "strings too long to add quotation marks");
    }
    copy_text_or_abort(text, '"' + plain + '"');
}

} // namespace velmorant
