#pragma once

// Writing images as ECAT 6 matrix files.
//
// A file holds the header's frames, beds and slices, each plane a matrix of gate 1 and data set 0,
// in the order of ecat/plane_order.h. Its main header says that it was computed today by this
// package, and of the image its counts, which wrap around at 16 bits, and the plane separation; its
// subheaders the dimensions, which wrap around likewise, and the sizes in cm (the pixel's width
// stands for both). Orientation has no place in the file: pixels are stored in the standard one.
//
// Both create the file, or replace one that is there, and return the result of closing it. They end
// the run with "can't open " and the file's name, with the report of `checked_plane_size` before the
// file is touched, and with that of the allocators for an "in-plane buffer"; the process with status
// -1 where a block can't be written, as `mat_wblk` says, which is the case beyond 2 GiB. A file cut
// short stays behind. A header without frames, beds or slices makes a file without matrices.
//
// Frames above 4096, beds above 16 and slices above 256 wrap around in the matrix numbers, and take
// the places of the first ones. Nothing here looks at that; see `check_format_limits`
// (image/format_dispatch.h).

#include "image/image_header.h"

namespace velmorant
{

// Writes all volumes of a file: num_frames * (num_beds + 1) * num_slices planes of x_dim * y_dim
// floats, bed by bed within a frame. A pixel below the cutoff is written as the replacement, see
// `apply_cutoff`.
//
// Planes are stored as signed 16-bit integers, each with a scale of its own: scale_factor is the
// plane's extreme divided by `INT_MaxPixelValue`. The extreme is its maximum, or the square root of
// its minimum's square where that square is larger than the maximum's (squares in single
// precision). An integer is pixel / scale_factor (single precision) + 0.5 (double), truncated: half
// a unit is rounded up above 0, and toward 0 below. The low 16 bits are stored; 0 where 32 are not
// enough. A scale_factor of a magnitude up to 1e-20, or of NaN, stores 0. `INT_MaxPixelValue` comes
// with the preferences (32700 there, if they don't say otherwise); a program that reads none has to
// set it, because 0 makes every pixel 0.
std::int32_t write_image_matrix_cti6(const char *file_name, const float *image,
                                     const ImageHeader &header, float cutoff, float replacement);

// Writes a file of the same shape whose planes are all 0, for a program that fills them one by one
// (see `mat_write_image`). Its scale factors are 1, and its main header doesn't name the file.
std::int32_t create_image_matrix_cti6(const char *file_name, const ImageHeader &header);

} // namespace velmorant
