#pragma once

// Reading and writing the header blocks of ECAT 6 matrix files. Where the fields are, the records'
// own headers say.

#include "ecat/attn_subheader.h"
#include "ecat/image_subheader.h"
#include "ecat/main_header.h"
#include "ecat/norm_subheader.h"
#include "ecat/scan_subheader.h"

#include <cstdio>

namespace velmorant
{

// Reads block 1. Returns 0.
std::int32_t mat_read_main_header(std::FILE *stream, MatMainHeader &main_header);

// Read the subheader in the given block, which is the `first_block` of the matrix's directory
// entry.
//
// All fill every field of their record, whatever its value: a block of zeros makes counts of 0,
// floats of 0 and empty texts. A block that can't be read ends the process as `mat_rblk` does.
void mat_read_image_subheader(std::FILE *stream, std::int32_t block_number,
                              MatImageSubheader &subheader);
void mat_read_scan_subheader(std::FILE *stream, std::int32_t block_number,
                             MatScanSubheader &subheader);
void mat_read_attn_subheader(std::FILE *stream, std::int32_t block_number,
                             MatAttnSubheader &subheader);
void mat_read_norm_subheader(std::FILE *stream, std::int32_t block_number,
                             MatNormSubheader &subheader);

// Write the header into block 1 of a file, or the subheader into the given block. The counterpart of
// reading, field by field; bytes that no field covers become 0, or in scan, attenuation and
// normalisation subheaders the constants that ecat/headers.cpp lists and nothing reads. Return 0. A
// block that can't be written ends the process as `mat_wblk` does.
std::int32_t mat_write_main_header(std::FILE *stream, const MatMainHeader &main_header);
std::int32_t mat_write_image_subheader(std::FILE *stream, std::int32_t block_number,
                                       const MatImageSubheader &subheader);
std::int32_t mat_write_scan_subheader(std::FILE *stream, std::int32_t block_number,
                                      const MatScanSubheader &subheader);
std::int32_t mat_write_attn_subheader(std::FILE *stream, std::int32_t block_number,
                                      const MatAttnSubheader &subheader);
std::int32_t mat_write_norm_subheader(std::FILE *stream, std::int32_t block_number,
                                      const MatNormSubheader &subheader);

} // namespace velmorant
