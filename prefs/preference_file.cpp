#include "prefs/preference_file.h"

#include "prefs/error_report.h"
#include "prefs/file_handle.h"

#include <algorithm>
#include <cstdio>
#include <string_view>
#include <utility>

namespace velmorant
{

bool check_preference_file(const char *path, const char *key, Line &line_out)
{
    const FileHandle file = open_or_report(path, "r");
    Line line{};
    while (fgetsmod(line.data(), static_cast<std::int32_t>(line.size()), file.get()) != nullptr) {
        if (test_strings(line.data(), key)) {
            line_out = line;
            return true;
        }
    }
    line_out.front() = '\0';
    return false;
}

// Says that a missing key is being added, and opens the file for its line.
static FileHandle open_for_missing_key(const char *path, const char *key)
{
    std::printf("'%s' created in %s...\n", key, path);
    return open_or_report(path, "a");
}

void preference_string_strings(const char *path, std::span<char> value_out, const char *key,
                               const char *default_text)
{
    Line line;
    if (check_preference_file(path, key, line)) {
        get_string_strings(line.data(), value_out);
        return;
    }
    FileHandle file = open_for_missing_key(path, key);
    std::fprintf(file.get(), "%s:= \"%s\"\n", key, default_text);
    close_written(std::move(file), path);
    if (!value_out.empty()) {
        const std::string_view text =
            std::string_view(default_text).substr(0, value_out.size() - 1);
        *std::copy(text.begin(), text.end(), value_out.begin()) = '\0';
    }
}

float preference_float_strings(const char *path, const char *key, float default_value)
{
    Line line;
    if (check_preference_file(path, key, line)) {
        return get_float_strings(line.data());
    }
    FileHandle file = open_for_missing_key(path, key);
    std::fprintf(file.get(), "%s:= %f\n", key, static_cast<double>(default_value));
    close_written(std::move(file), path);
    return default_value;
}

std::int32_t preference_int_strings(const char *path, const char *key, std::int32_t default_value)
{
    Line line;
    if (check_preference_file(path, key, line)) {
        return get_int_strings(line.data());
    }
    FileHandle file = open_for_missing_key(path, key);
    std::fprintf(file.get(), "%s:= %d\n", key, default_value);
    close_written(std::move(file), path);
    return default_value;
}

std::int16_t preference_short_int_strings(const char *path, const char *key,
                                          std::int32_t default_value)
{
    const auto narrowed = static_cast<std::int16_t>(default_value);
    return static_cast<std::int16_t>(preference_int_strings(path, key, narrowed));
}

} // namespace velmorant
