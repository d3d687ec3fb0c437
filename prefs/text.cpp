#include "prefs/text.h"

#include "prefs/end_run.h"
#include "prefs/error_report.h"

#include <algorithm>
#include <string>

namespace velmorant
{

static bool fits(std::string_view source)
{
    return source.size() < std::tuple_size_v<Text>;
}

static void copy_text(Text &destination, std::string_view source)
{
    *std::copy(source.begin(), source.end(), destination.begin()) = '\0';
}

void copy_text_or_abort(Text &destination, std::string_view source)
{
    if (!fits(source)) {
        abort_run();
    }
    copy_text(destination, source);
}

void copy_text_or_report(Text &destination, std::string_view source)
{
    if (!fits(source)) {
        print_error_message(2, "file name too long: ", std::string(source).c_str());
    }
    copy_text(destination, source);
}

} // namespace velmorant
