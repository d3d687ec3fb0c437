#include "prefs/preference_file.h"

#include "prefs/error_report.h"
#include "prefs/numbers.h"
#include "prefs/text_file.h"
#include "prefs/whole_text.h"

#include <algorithm>
#include <cstdio>
#include <string_view>

#include <fcntl.h>
#include <unistd.h>

namespace velmorant
{

bool check_preference_file(const char *path, const char *key, Line &line_out)
{
    TextFile file(path);
    while (file.read_line(line_out)) {
        if (test_strings(line_out.data(), key)) {
            return true;
        }
    }
    line_out.front() = '\0';
    return false;
}

static std::string setting_line(const char *key, const std::string &value)
{
    return std::string(key) + ":= " + value + "\n";
}

std::string written_line(const char *key, const char *text)
{
    return setting_line(key, std::string("\"") + text + '"');
}

std::string written_line(const char *key, float value)
{
    return setting_line(key, decimal_text(value));
}

std::string written_line(const char *key, std::int32_t value)
{
    return setting_line(key, std::to_string(value));
}

void announce_key(const char *path, const char *key)
{
    std::printf("'%s' created in %s...\n", key, path);
}

// Adds a missing key to the end of the file.
static void append_line(const char *path, const char *key, const std::string &line)
{
    announce_key(path, key);
    const int file = open(path, O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0666);
    if (file < 0) {
        print_error_message(2, "can't open ", path);
    }
    const bool appended = append_whole(file, line);
    if (close(file) != 0 || !appended) {
        print_error_message(2, "can't write ", path);
    }
}

void preference_string_strings(const char *path, std::span<char> value_out, const char *key,
                               const char *default_text)
{
    Line line{};
    if (check_preference_file(path, key, line)) {
        get_string_strings(line.data(), value_out);
        return;
    }
    append_line(path, key, written_line(key, default_text));
    if (!value_out.empty()) {
        const std::string_view text =
            std::string_view(default_text).substr(0, value_out.size() - 1);
        *std::copy(text.begin(), text.end(), value_out.begin()) = '\0';
    }
}

// extract: what takes the number from its line.
template <class Number>
static Number find_or_append(const char *path, const char *key, Number default_value,
                             Number (*extract)(const char *))
{
    Line line{};
    if (check_preference_file(path, key, line)) {
        return extract(line.data());
    }
    append_line(path, key, written_line(key, default_value));
    return default_value;
}

float preference_float_strings(const char *path, const char *key, float default_value)
{
    return find_or_append(path, key, default_value, get_float_strings);
}

std::int32_t preference_int_strings(const char *path, const char *key, std::int32_t default_value)
{
    return find_or_append(path, key, default_value, get_int_strings);
}

std::int16_t preference_short_int_strings(const char *path, const char *key,
                                          std::int32_t default_value)
{
    const auto narrowed = static_cast<std::int16_t>(default_value);
    return static_cast<std::int16_t>(preference_int_strings(path, key, narrowed));
}

} // namespace velmorant
