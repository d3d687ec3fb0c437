#include "prefs/preference_line.h"

#include "prefs/error_report.h"
#include "prefs/numbers.h"

#include <algorithm>
#include <cstring>
#include <string_view>

namespace velmorant
{

char *fgetsmod(char *buffer, std::int32_t size, std::FILE *stream)
{
    if (size < 1) {
        return nullptr;
    }
    std::int32_t length = 0;
    while (length < size - 1) {
        const int character = std::getc(stream);
        if (character == EOF) {
            if (length == 0 || std::ferror(stream) != 0) {
                return nullptr;
            }
            break;
        }
        buffer[length++] = static_cast<char>(character);
        if (character == '\n' || character == '\r') {
            break;
        }
    }
    buffer[length] = '\0';
    return buffer;
}

static char fold(char character)
{
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a')
                                                : character;
}

bool test_strings(const char *line, const char *key)
{
    const std::string_view text(line);
    const std::string_view sought(key);
    const auto same = [](char a, char b) {
        return fold(a) == fold(b);
    };
    return sought.empty() ||
           std::search(text.begin(), text.end(), sought.begin(), sought.end(), same) != text.end();
}

// The text after the line's first ":=", or null.
static const char *find_value(const char *line)
{
    const char *separator = std::strstr(line, ":=");
    return separator == nullptr ? nullptr : separator + 2;
}

static const char *find_value_or_report(const char *line)
{
    const char *value = find_value(line);
    if (value == nullptr) {
        print_error_message(1, "can't find a preference value");
    }
    return value;
}

std::int32_t get_int_strings(const char *line)
{
    return text_to_int32(find_value_or_report(line));
}

std::int16_t get_short_int_strings(const char *line)
{
    return static_cast<std::int16_t>(get_int_strings(line));
}

float get_float_strings(const char *line)
{
    return text_to_float(find_value_or_report(line));
}

void get_string_strings(const char *line, std::span<char> value_out)
{
    const char *value = find_value(line);
    const char *opening = value == nullptr ? nullptr : std::strchr(value, '"');
    const char *closing = opening == nullptr ? nullptr : std::strchr(opening + 1, '"');
    if (closing == nullptr) {
        print_error_message(1, "can't find a preference string");
    }
    const auto length = static_cast<std::size_t>(closing - (opening + 1));
    const std::size_t room = value_out.empty() ? 0 : value_out.size() - 1;
    std::copy_n(opening + 1, std::min(length, room), value_out.begin());
}

} // namespace velmorant
