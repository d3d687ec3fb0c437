#pragma once

#include <cstdint>
#include <cstdio>

namespace velmorant
{

// Whether there is something under this name, but no regular file: a pipe, say, that nobody may
// ever write to.
bool is_special(const char *path);

// The bytes of an open file, 0 where it has no end that can be sought. Leaves it at its end.
std::int64_t file_size(std::FILE *stream);

// The size of an open regular file; 2^63 - 1 for anything else, whose end shows only in reading,
// and for an empty file.
std::int64_t bytes_to_read(std::FILE *stream);

} // namespace velmorant
