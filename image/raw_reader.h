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
#include "image/stored_volume.h"

namespace velmorant
{

// Opens the volume that the selector's frame and bed name. Pixels after the end of the file are 0.
// Fatal, in this order; and as `checked_image_size` says:
//   "can't open " NAME                               the image
//   "illegal volume (frame 0, bed 0) in " NAME       it would begin before the file, or too far on
//   "unspecified byte order in the header"           neither 0 nor 1, and there are pixels
//   "internal flag error"                            no orientation flag is 0 or 1
//   "can't allocate memory for file piece (131KB)"
//   "can't read " NAME                               the first byte is there, but can't be read
StoredVolume open_raw_volume(const char *image_name, const ImageHeader &header,
                             const ImageMatrix &selector, StoredType type);

// Open a volume of signed or unsigned 16-bit integers or of floats and read it into `buffer`
// (image_size(header) floats), see `read_box`.
void read_image_planes_binary(const char *image_name, float *buffer, const ImageHeader &header,
                              const ImageMatrix &selector);
void read_image_planes_binary_unsigned(const char *image_name, float *buffer,
                                       const ImageHeader &header, const ImageMatrix &selector);
void read_image_planes_binary_float(const char *image_name, float *buffer,
                                    const ImageHeader &header, const ImageMatrix &selector);

} // namespace velmorant
