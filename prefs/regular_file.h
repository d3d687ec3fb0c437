#pragma once

#include <cstdint>
#include <cstdio>

namespace velmorant
{

// Whether there is something under this name, but no regular file: a pipe, say, that nobody may ever
// write to.
bool is_special(const char *path);

// The bytes of an open file, 0 where it has no end that can be sought. Leaves it at its end.
std::int64_t file_size(std::FILE *stream);

} // namespace velmorant
