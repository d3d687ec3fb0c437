#include "ecat/directory_index.h"

namespace velmorant
{

DirectoryIndex::DirectoryIndex(std::FILE *open_stream) : walk(open_stream)
{
}

const MatDirEntry *DirectoryIndex::find(std::uint32_t matrix_number)
{
    auto found = entries.find(matrix_number);
    for (DirectoryBlock block{}; found == entries.end() && walk.read_next(block);) {
        for (const MatDirEntry &entry : block.entries) {
            entries.try_emplace(static_cast<std::uint32_t>(entry.matrix_number), entry);
        }
        found = entries.find(matrix_number);
    }
    return found == entries.end() ? nullptr : &found->second;
}

} // namespace velmorant
