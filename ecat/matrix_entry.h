#pragma once

// Making room for a matrix in an ECAT 6 matrix file.
//
// Matrices lie one after another: a new one takes the blocks after those of the entry before it in
// its directory block, or after the directory block itself; its subheader first, then its data. A
// new directory block, made where all entries of the chain are taken, lies after the last matrix of
// the one before it.
//
// A matrix that is there already keeps its place if its blocks, subheader included, are at least as
// many as those of the new data alone. So one that has grown by a single block is not moved, though
// its last block is then the one after its own, where the next matrix may begin: that is how this
// package lays its files out. One that has grown by more is abandoned, its blocks with it, and gets
// an entry further on. What counts is the last rewrite: blocks given up by a smaller one are
// forgotten.

#include "ecat/directory_block.h"

#include <cstdint>
#include <cstdio>

namespace velmorant
{

// Finds or makes the entry of a matrix with so many data blocks, and writes the directory blocks
// that it changes. Returns the block of the matrix's subheader. Ends the process as `mat_rblk` and
// `mat_wblk` do. A circling directory (ecat/directory.h) is mended when it is extended.
std::int32_t mat_enter(std::FILE *stream, std::uint32_t matrix_number, std::int32_t data_blocks);

// Where a matrix was entered.
struct MatrixPlace {
    std::int32_t first_block;     // of the matrix
    std::int32_t directory_block; // which holds its entry
};

// The same, but looks no further back than the given block of the directory. Whoever knows that the
// matrix is new and that the blocks before are full begins with the block of the matrix entered
// last, so that a study of thousands of matrices doesn't read its directory thousands of times.
MatrixPlace enter_matrix(std::FILE *stream, std::uint32_t matrix_number, std::int32_t data_blocks,
                         std::int32_t directory_block);

} // namespace velmorant
