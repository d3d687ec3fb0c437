#pragma once

// The directory of an ECAT 6 matrix file, which names every matrix and its blocks: a chain of blocks
// (ecat/directory_block.h) that begins with block 2 and ends at the first one that links back to it.
//
// A damaged chain, whose links run in a circle without block 2, ends where it would come to a block
// number for the second time, so that every walk ends. A link to a block that can't be read ends the
// process as `mat_rblk` does.

#include "ecat/directory_block.h"

#include <cstdint>
#include <cstdio>
#include <span>
#include <unordered_set>
#include <vector>

namespace velmorant
{

// Follows the chain of a directory, reading a block at a time.
class DirectoryWalk
{
public:
    // first_block: where in the chain to begin.
    explicit DirectoryWalk(std::FILE *open_stream, std::int32_t first_block = FirstDirectoryBlock);

    // Reads the chain's next block, or returns false where the chain has ended.
    bool read_next(DirectoryBlock &block);

    // The number of the block that was read last.
    std::int32_t block_number() const;

    // The number of the block that `read_next` reads, unless the chain has ended.
    std::int32_t next_block_number() const;

private:
    std::FILE *stream;
    std::int32_t current_block = 0;
    std::int32_t next_block;
    std::unordered_set<std::int32_t> visited; // block numbers
    bool ended = false;
};

// Finds the first entry, in the order of the chain, with this matrix number (that of an empty entry,
// 0, included). Returns 1, and fills `entry`, or 0 where there is none. Reads the chain afresh each
// time; whoever looks up many matrices takes a `DirectoryIndex` (ecat/directory_index.h).
std::int32_t mat_lookup(std::FILE *stream, std::uint32_t matrix_number, MatDirEntry &entry);

// A directory in memory.
struct MatDirList {
    std::int32_t used_entries;        // how many of the entries have a matrix number other than 0
    std::vector<MatDirEntry> entries; // block by block, 31 each, empty ones included
};

// Reads the whole directory.
MatDirList mat_read_dir(std::FILE *stream);

// Copies the used entries (matrix number other than 0), in the order of the chain, as far as there
// is room for them. Returns how many there are in all.
std::int32_t mat_list(std::FILE *stream, std::span<MatDirEntry> entries);

} // namespace velmorant
