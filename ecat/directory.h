#pragma once

// The directory of an ECAT 6 matrix file, which names every matrix and its blocks.
//
// The directory is a chain of blocks that begins with block 2. Each is 128 signed 32-bit
// little-endian integers:
//
//   WORD    HOLDS
//   0       number of free entries in this block, 31 in a fresh one
//   1       number of the chain's next block; 2, the first one's, ends the chain
//   2       number of the chain's previous block, 0 in the first one
//   3       number of used entries in this block
//   4-127   31 entries of 4 words each, in the order of `MatDirEntry`
//
// Nothing relies on the counts. A damaged chain, whose links run in a circle without block 2, ends
// where it would come to a block number for the second time, so that every walk ends. A link to a
// block that can't be read ends the process as `mat_rblk` does.

#include "ecat/blocks.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <span>
#include <unordered_set>
#include <vector>

namespace velmorant
{

inline constexpr std::int32_t FirstDirectoryBlock = 2;
inline constexpr std::size_t DirectoryBlockEntries = 31;

struct MatDirEntry {
    std::int32_t matrix_number; // see `mat_numcod`; 0 = empty, -1 = abandoned
    std::int32_t first_block;   // the matrix's subheader, its data following
    std::int32_t last_block;    // the last block of its data
    std::int32_t status;        // 1 = written; not looked at
};

struct DirectoryBlock {
    std::int32_t free_entries;
    std::int32_t next_block;
    std::int32_t previous_block;
    std::int32_t used_entries;
    std::array<MatDirEntry, DirectoryBlockEntries> entries;
};
static_assert(sizeof(DirectoryBlock) == BlockBytes, "word for word as in the file");

// Follows the chain of a directory, reading a block at a time.
class DirectoryWalk
{
public:
    explicit DirectoryWalk(std::FILE *open_stream);

    // Reads the chain's next block, or returns false where the chain has ended.
    bool read_next(DirectoryBlock &block);

private:
    std::FILE *stream;
    std::int32_t next_block = FirstDirectoryBlock;
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
