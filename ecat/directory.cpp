#include "ecat/directory.h"

#include <algorithm>

namespace velmorant
{

DirectoryWalk::DirectoryWalk(std::FILE *open_stream, std::int32_t first_block)
    : stream(open_stream), next_block(first_block)
{
}

bool DirectoryWalk::read_next(DirectoryBlock &block)
{
    if (ended) {
        return false;
    }
    current_block = next_block;
    block = read_directory_block(stream, current_block);
    visited.insert(current_block);
    next_block = block.next_block;
    ended = next_block == FirstDirectoryBlock || visited.contains(next_block);
    return true;
}

std::int32_t DirectoryWalk::block_number() const
{
    return current_block;
}

std::int32_t DirectoryWalk::next_block_number() const
{
    return next_block;
}

std::int32_t mat_lookup(std::FILE *stream, std::uint32_t matrix_number, MatDirEntry &entry)
{
    const auto sought = static_cast<std::int32_t>(matrix_number);
    DirectoryWalk walk(stream);
    for (DirectoryBlock block{}; walk.read_next(block);) {
        const auto *found = std::ranges::find(block.entries, sought, &MatDirEntry::matrix_number);
        if (found != block.entries.end()) {
            entry = *found;
            return 1;
        }
    }
    return 0;
}

static bool is_used(const MatDirEntry &entry)
{
    return entry.matrix_number != 0;
}

MatDirList mat_read_dir(std::FILE *stream)
{
    MatDirList list{};
    DirectoryWalk walk(stream);
    for (DirectoryBlock block{}; walk.read_next(block);) {
        list.entries.insert(list.entries.end(), block.entries.begin(), block.entries.end());
    }
    list.used_entries = static_cast<std::int32_t>(std::ranges::count_if(list.entries, is_used));
    return list;
}

std::int32_t mat_list(std::FILE *stream, std::span<MatDirEntry> entries)
{
    std::size_t used = 0;
    DirectoryWalk walk(stream);
    for (DirectoryBlock block{}; walk.read_next(block);) {
        for (const MatDirEntry &entry : block.entries) {
            if (!is_used(entry)) {
                continue;
            }
            if (used < entries.size()) {
                entries[used] = entry;
            }
            ++used;
        }
    }
    return static_cast<std::int32_t>(used);
}

} // namespace velmorant
