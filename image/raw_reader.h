#pragma once

// Reading one volume of a raw image.
//
// Data file: data_offset bytes that are skipped, then volumes of x_dim * y_dim * num_slices
// elements, x fastest, in the file's own orientation; frame by frame within a bed, beds one after
// the other. The volume of frame f (from 1) and bed b (from 0) begins at byte
//   data_offset + (num_frames * b + (f - 1)) * volume bytes.
// An integer n stands for n * (pixel_scaling / 32700), computed in single precision; a float for
// itself.

#include "image/image_header.h"

namespace velmorant
{

// Read the volume that the selector's frame and bed name into `buffer` (image_size(header) floats)
// and turn it into the standard orientation. The file's elements are signed or unsigned 16-bit
// integers or IEEE 754 single-precision floats. Pixels after the end of the file are 0.
//
// End the run with "can't open " and the image's name; with "illegal volume (frame 0, bed 0) in "
// and the image's name where a volume would begin before the file or further than a file can reach;
// with "can't read " and the image's name where the system reports a read error; with "unspecified
// byte order in the header" where byte_order is neither 0 nor 1 and there are pixels; with the
// reports of `checked_image_size` and `flip_image`.
void read_image_planes_binary(const char *image_name, float *buffer, const ImageHeader &header,
                              const ImageMatrix &selector);
void read_image_planes_binary_unsigned(const char *image_name, float *buffer,
                                       const ImageHeader &header, const ImageMatrix &selector);
void read_image_planes_binary_float(const char *image_name, float *buffer,
                                    const ImageHeader &header, const ImageMatrix &selector);

} // namespace velmorant
