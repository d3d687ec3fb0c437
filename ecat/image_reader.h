#pragma once

// Reading the images of an ECAT 6 matrix file.
//
// Each plane is a matrix of its own: x_dim * y_dim signed 16-bit integers, x fastest, in the data
// blocks after its subheader. An integer n stands for n * scale_factor, computed in single
// precision, with the scale_factor of the plane's own subheader. Planes are taken in the order and
// the orientation in which they are stored; nothing is flipped.
//
// All report "can't open " and the file's name as fatal, and end the process with status -1 where a
// block can't be read, as `mat_rblk` says.

#include "ecat/directory_block.h"
#include "image/image_header.h"
#include "image/stored_volume.h"

#include <bit>
#include <cstdint>
#include <cstdio>

namespace velmorant
{

// Fills the header from the file's main header and from the image subheaders of all matrices that
// the main header promises, beds outermost, then frames, planes and gates, of data set 0:
//
//   num_frames, num_slices         as in the main header
//   num_gates                      as in the main header, 0 becoming 1
//   num_data                       0
//   num_beds                       the main header's num_bed_positions
//   x_dim, y_dim                   as in the matrix visited last, or 0
//   pixel_size_x, pixel_size_y     the pixel_size of that matrix in mm, or 0
//   slice_thickness                the main header's plane_separation in mm
//   the three orientation flags    1
//   data_offset, byte_order        0 and 1
//
// pixel_scaling and data_format stay as they are. The visit ends at the first matrix that the
// directory lacks, which is no error, with these lines (frame, plane, gate, data, bed):
//   matrix (1,30,1,0,0) not found...
//   CHECK A POSSIBLE PROBLEM IN THE MAIN HEADER...
//   THE PROGRAM MAY FAIL IN THE FURTHER PROCESSING...
// Returns the result of closing the file.
//
// Reports as fatal: "illegal pixel size in the subheader" (0 or less); "inconsistent pixel size
// among frames" where it is not the previous matrix's; "illegal dimensions" (below 1); "inconsisten
// dimensions among frames" where they are not the previous matrix's. NaN is a pixel size that goes
// with any other.
std::int32_t read_header_cti6(const char *file_name, ImageHeader &header);

// Opens the planes from the selector's `plane` to the header's num_slices, of the selector's frame,
// gate, data set and bed, as a volume of so many slices.
//
// All planes are taken to have the header's size, x_dim * y_dim pixels, and as many data blocks as
// these fill: x_dim * y_dim / 256, truncated. The pixels beyond stand for the integer 0.
//
// Checks each plane in turn: its directory entry, its subheader, and that its data blocks are
// there. Ends the process with status -1 and
//   "matrix (1,30,1,0,0) not found..."    the directory lacks the plane; no line break
//   what `mat_rblk` says                  a block can't be read
// Ends the run as `checked_plane_size` does, and for 2^31 planes or more with
//   "more planes than a volume can have"
StoredVolume open_volume_cti6(const char *file_name, const ImageHeader &header,
                              const ImageMatrix &selector);

// Locates the pixels of a plane by its directory entry. Ends the process as `mat_rblk` does if one
// of its blocks is not in the file, which has `file_bytes` bytes.
StoredPart locate_plane(std::FILE *stream, std::int64_t file_bytes, const MatDirEntry &entry,
                        const ImageHeader &header);

// A volume without a file and without parts, for a caller that opens the file and locates the
// planes. byte_order: of the pixels.
StoredVolume unopened_volume_cti6(const char *file_name, const ImageHeader &header,
                                  std::endian byte_order);

// Opens the planes and reads them into `pixels`: (num_slices - plane + 1) * x_dim * y_dim floats.
// Returns the result of closing the file.
std::int32_t read_image_planes_cti6(const char *file_name, float *pixels, const ImageHeader &header,
                                    const ImageMatrix &selector);

// How many pixels at the end of each plane are beyond its data blocks, so that they are 0.
std::int32_t unread_pixels_cti6(const ImageHeader &header);

// `read_image_planes_cti6` for a file whose pixels, alone of all its numbers, are big-endian.
std::int32_t read_image_planes_cti6_swap_byte_order(const char *file_name, float *pixels,
                                                    const ImageHeader &header,
                                                    const ImageMatrix &selector);

// And for many volumes, one after the other, as stored: the frames from the selector's to
// num_frames, in each the beds from the selector's to num_beds, in each the planes from the
// selector's to num_slices. The line about a missing plane ends with a line break.
std::int32_t read_image_matrix_cti6(const char *file_name, float *pixels, const ImageHeader &header,
                                    const ImageMatrix &selector);

} // namespace velmorant
