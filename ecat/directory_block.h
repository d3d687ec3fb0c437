#pragma once

// The blocks that make up the directory of an ECAT 6 matrix file. Each is 128 signed 32-bit
// little-endian integers:
//
//   WORD    HOLDS
//   0       number of free entries in this block, 31 in a fresh one
//   1       number of the chain's next block; 2, the first one's, ends the chain
//   2       number of the chain's previous block, 0 in the first one
//   3       number of used entries in this block
//   4-127   31 entries of 4 words each, in the order of `MatDirEntry`
//
// Nothing relies on the counts.

#include "ecat/blocks.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>

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

// A block of empty entries that ends the chain.
DirectoryBlock fresh_directory_block(std::int32_t previous_block);

// End the process as `mat_rblk` and `mat_wblk` do.
DirectoryBlock read_directory_block(std::FILE *stream, std::int32_t block_number);
void write_directory_block(std::FILE *stream, std::int32_t block_number,
                           const DirectoryBlock &block);

} // namespace velmorant
