#pragma once

// Settings by key in a preference file. The files complete themselves: whoever asks for a key that
// the file lacks appends it with its default, so that after the first run a file lists every
// setting, in the order in which the program asks.
//
// Every call opens the file, reads it from the top and closes it; the first line that holds the key
// (see `test_strings`) supplies the value. A file that can't be read ends the run as a `TextFile`
// does: what can't be read is not taken for missing. One that can't be opened to append ends it
// with "can't open " and the path, one that can't be appended to with "can't write "; a line is
// appended whole or not at all, because a part of one could be taken for another value later.

#include "prefs/preference_line.h"

#include <cstdint>
#include <span>
#include <string>

namespace velmorant
{

// Copies the first line that holds the key, its line end included, into `line_out` and returns
// true; without such a line `line_out` becomes empty and the result is false.
bool check_preference_file(const char *path, const char *key, Line &line_out);

// The line that states a setting:
//   string   KEY:= "TEXT"
//   float    KEY:= %f    (six decimals)
//   integer  KEY:= %d
std::string written_line(const char *key, const char *text);
std::string written_line(const char *key, float value);
std::string written_line(const char *key, std::int32_t value);

// Prints "'KEY' created in PATH..." as a line.
void announce_key(const char *path, const char *key);

// The value of a key, extracted from its line as by the get_..._strings procedure of the same type,
// which may end the run. A missing key they announce, append its line at the very end of the file
// (no line end is put before it) and return the default itself. value_out: zero-filled by the
// caller. A value found is copied without a terminator; a default is copied with one, cut to the
// room there is.
void preference_string_strings(const char *path, std::span<char> value_out, const char *key,
                               const char *default_text);
float preference_float_strings(const char *path, const char *key, float default_value);
std::int32_t preference_int_strings(const char *path, const char *key, std::int32_t default_value);
// The default is narrowed to its low 16 bits before it is written and returned.
std::int16_t preference_short_int_strings(const char *path, const char *key,
                                          std::int32_t default_value);

} // namespace velmorant
