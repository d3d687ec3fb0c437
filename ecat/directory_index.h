#pragma once

#include "ecat/directory.h"

#include <unordered_map>

namespace velmorant
{

// Looks up many matrices of one file. Answers as `mat_lookup` does, but reads each block of the
// directory once at most, and not before a lookup has come as far as it in the chain: a dynamic
// study has thousands of matrices in more than a hundred directory blocks.
class DirectoryIndex
{
public:
    explicit DirectoryIndex(std::FILE *open_stream);

    // The entry of a matrix, or null where there is none. Valid as long as the index.
    const MatDirEntry *find(std::uint32_t matrix_number);

private:
    DirectoryWalk walk;
    // The first entry of each matrix number in the blocks read so far.
    std::unordered_map<std::uint32_t, MatDirEntry> entries;
};

} // namespace velmorant
