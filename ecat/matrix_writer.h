#pragma once

// Writing matrices into an ECAT 6 matrix file that is open for reading and writing: each is entered
// into the directory (see `mat_enter`, which also says what becomes of a matrix that is there
// already), then its subheader is written, then its data. What is left of the last data block is 0.
// A block that can't be written ends the process as `mat_wblk` does.

#include "ecat/attn_subheader.h"
#include "ecat/image_subheader.h"
#include "ecat/matrix_entry.h"
#include "ecat/norm_subheader.h"
#include "ecat/scan_subheader.h"

#include <cstdint>
#include <cstdio>
#include <span>

namespace velmorant
{

// Image planes and sinograms: 16-bit integers.
void mat_write_image(std::FILE *stream, std::uint32_t matrix_number,
                     const MatImageSubheader &subheader, std::span<const std::int16_t> data);
void mat_write_scan(std::FILE *stream, std::uint32_t matrix_number,
                    const MatScanSubheader &subheader, std::span<const std::int16_t> data);

// `mat_write_image` for many new planes, which looks for the entry from the given block of the
// directory on: see `enter_matrix`.
MatrixPlace write_new_image(std::FILE *stream, std::uint32_t matrix_number,
                            const MatImageSubheader &subheader, std::span<const std::int16_t> data,
                            std::int32_t directory_block);

// Attenuation and normalisation planes: VAX floats.
void mat_write_attn(std::FILE *stream, std::uint32_t matrix_number,
                    const MatAttnSubheader &subheader, std::span<const float> data);
void mat_write_norm(std::FILE *stream, std::uint32_t matrix_number,
                    const MatNormSubheader &subheader, std::span<const float> data);

// The data alone, from the given block on: 256 integers, or 128 floats, a block.
void mat_write_idata(std::FILE *stream, std::int32_t first_block,
                     std::span<const std::int16_t> data);
void mat_write_fdata(std::FILE *stream, std::int32_t first_block, std::span<const float> data);

} // namespace velmorant
