#include "ecat/directory.h"

#include "image/byte_order.h"

#include <algorithm>

namespace velmorant
{

static DirectoryBlock read_directory_block(std::FILE *stream, std::int32_t block_number)
{
    std::array<std::uint8_t, BlockBytes> bytes{};
    mat_rblk(stream, block_number, bytes.data(), 1);
    std::array<std::uint32_t, BlockBytes / sizeof(std::uint32_t)> words{};
    for (std::size_t i = 0; i < words.size(); ++i) {
        words[i] = load_word<std::endian::little, std::uint32_t>(&bytes[i * sizeof(words[i])]);
    }
    return std::bit_cast<DirectoryBlock>(words);
}

DirectoryWalk::DirectoryWalk(std::FILE *open_stream) : stream(open_stream)
{
}

bool DirectoryWalk::read_next(DirectoryBlock &block)
{
    if (ended) {
        return false;
    }
    block = read_directory_block(stream, next_block);
    visited.insert(next_block);
    next_block = block.next_block;
    ended = next_block == FirstDirectoryBlock || visited.contains(next_block);
    return true;
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
