#pragma once

// The lines of a preference file, which are also those of a raw image's text header: 8-bit text,
// "key:= value", read leniently because people edit these files by hand. Numbers follow atoi and
// atof in the POSIX locale; the package never changes the locale.

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <span>

namespace velmorant
{

// Room for a line: at most 253 characters, its line end among them, and a terminating zero.
using Line = std::array<char, 254>;

// Reads one line of at most size - 1 characters into `buffer` and terminates it. A line ends after
// a line feed or a carriage return (each ends a line by itself and stays in it), at the end of the
// file, or where the buffer is full; what is left of a longer line is the next one.
// Returns `buffer`, or null where there is no line: at the end of the file, on a read error
// (whatever was read before it) and for a size below 1. With size 1 the line is empty.
char *fgetsmod(char *buffer, std::int32_t size, std::FILE *stream);

// Whether the line holds the key: anywhere in it, A to Z and a to z taken as the same letters,
// every other byte compared as it is. Blanks, word boundaries and the ":=" play no part.
bool test_strings(const char *line, const char *key);

// The number after the line's first ":=". Without a number that is 0; without ":=" the run ends
// with "can't find a preference value". The 16-bit form keeps the low 16 bits, so that 40000 is
// -25536.
std::int32_t get_int_strings(const char *line);
std::int16_t get_short_int_strings(const char *line);
float get_float_strings(const char *line);

// Copies the characters between the first two double quotes after the line's first ":=" to the
// start of `value_out`, at most one fewer than it has room for, and writes nothing after them: the
// caller hands in a zero-filled text, which ends where the value ends.
// Without ":=" or either quote the run ends with "can't find a preference string".
void get_string_strings(const char *line, std::span<char> value_out);

} // namespace velmorant
