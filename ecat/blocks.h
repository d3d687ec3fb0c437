#pragma once

// ECAT 6 matrix files, block by block.
//
// A file is a sequence of 512-byte blocks, counted from 1:
//
//   BLOCK   HOLDS
//   1       main header (ecat/main_header.h)
//   2       first block of the directory (ecat/directory.h)
//   3...    the matrices, one image plane, sinogram, attenuation or normalisation plane each: a
//           subheader block and then its data blocks; and further directory blocks
//
// All integers are little-endian and all floats VAX F numbers (ecat/vax_numbers.h), after the
// computer on which the format was born.
//
// A block number is a signed 32-bit integer, and so is the byte offset that is made of it, modulo
// 2^32. Block 4,194,304, at the end of 2 GiB, is the last that is reached; further numbers come to
// a negative offset, which can't be sought, or wrap around to the file's beginning.

#include <cstddef>
#include <cstdint>
#include <cstdio>

namespace velmorant
{

inline constexpr std::size_t BlockBytes = 512;

// Opens a file in one of the modes "rb", "wb", "r+b" and "w+b", as fopen does. Null where it can't
// be opened; the caller reports. The stream has no buffer, since whole blocks are moved: nothing is
// read ahead, and a short write is seen at once. It is closed with `mat_close`.
std::FILE *mat_open(const char *path, const char *mode);

// Closes the stream; the result is that of fclose, 0 or EOF.
std::int32_t mat_close(std::FILE *stream);

// Reads `block_count` blocks of 512 bytes, from `first_block` on, into the buffer; or prints
//   fseek error in mat_rblk (blkno -1, nblks 1)...
//   fread error in mat_rblk (512 expected, 0 read)...
// on standard output, where the blocks can't be sought or fewer bytes arrive, and ends the process
// with status -1. Leaves the stream at the beginning of the file. The byte count is 32-bit, too; a
// count that comes to a negative one reads nothing and ends like a short read.
void mat_rblk(std::FILE *stream, std::int32_t first_block, void *buffer, std::int32_t block_count);

// Writes blocks as `mat_rblk` reads them, and so extends the file; or ends the process with
//   fseek error in mat_wblk (blkno -1, nblks 1)...
//   fwrite error in mat_wblk (512 expected, 0 written)...
// Returns 0.
std::int32_t mat_wblk(std::FILE *stream, std::int32_t first_block, const void *buffer,
                      std::int32_t block_count);

// `mat_rblk` for pixel data. Returns 0.
std::int32_t mat_read_matrix_data(std::FILE *stream, std::int32_t first_block,
                                  std::int32_t block_count, void *buffer);

// Where blocks of a file of `file_bytes` bytes begin, as a byte offset, without reading them. Ends
// the process as `mat_rblk` would where they aren't all in the file.
std::int64_t mat_locate_blocks(std::int64_t file_bytes, std::int32_t first_block,
                               std::int32_t block_count);

// What `mat_rblk` says of blocks that can't be read, up to the numbers.
inline constexpr const char *BlockReadError = "fread error in mat_rblk";

} // namespace velmorant
