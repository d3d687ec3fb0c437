#pragma once

// Writing raw images: the text header and the data file, in the layout of image/raw_header.h and
// image/raw_reader.h.
//
// Common to all writers:
//   buffer       pixels in the standard orientation. While they are written they are turned to the
//                header's orientation in place, and back afterwards.
//   header       geometry, orientation, byte order, data offset (that many zero bytes precede the
//                data), and what the text header states, save for pixel_scaling, which the writer
//                finds. data_format is stated as it stands: the caller sets it to what the writer
//                stores, 1 or 3.
//   settings     the 16-bit writers look at the quantisation; nothing looks at the keyword.
//   threshold, replacement   a pixel below the threshold is written as the replacement, see
//                image/cutoff.h.
//
// The writers named ..._float store single-precision floats and state a scaling of 32700. The
// others store signed 16-bit integers and state the scaling that `choose_short_scaling` finds for
// the buffer with the threshold. An integer that overflows (see `quantise`) is stored as 0 after a
// line "sval %f; fval %f; quant %f" with its value, the stated scaling and the integer; once the
// file is written, "*** overflow pixel values (Signed Short Integers) set to 0 ***" follows.
//
// The scaling is stated with six decimals. An extreme below 0.03 is so stated less exactly than to
// half a stored unit, and one below 0.0000005 as 0, with which a file can't be read back: images of
// such small values are stored as floats, or in another unit.
//
// They end the run with "can't open " or "can't write " and the file's name, and with the reports
// of `header_file_name`, `check_byte_order`, `checked_image_size`, `checked_volume_count` and
// `flip_image`.

#include "image/format_setting.h"
#include "image/image_header.h"

namespace velmorant
{

// The text header alone. Its 16-bit scaling is that of the one volume in `buffer`; the float form
// does not look at the buffer.
void write_image_header_binary(const char *image_name, const float *buffer,
                               const ImageHeader &header, const FormatSetting &settings,
                               float threshold);
void write_image_header_binary_float(const char *image_name, const float *buffer,
                                     const ImageHeader &header, const FormatSetting &settings);

// The text header and one volume; num_frames and num_beds are stated, but play no part.
void write_image_matrix_binary(const char *image_name, float *buffer, const ImageHeader &header,
                               const FormatSetting &settings, float threshold, float replacement);
void write_image_matrix_binary_float(const char *image_name, float *buffer,
                                     const ImageHeader &header, const FormatSetting &settings,
                                     float threshold, float replacement);

// The text header and every volume of a file: num_frames * (num_beds + 1) volumes after one
// another, all frames of bed 0, then those of bed 1 and so on. One scaling serves them all. The
// text header states a data offset of 0 whatever the record holds.
void write_image_matrix_binary_multiple(const char *image_name, float *buffer,
                                        const ImageHeader &header, const FormatSetting &settings,
                                        float threshold, float replacement);
void write_image_matrix_binary_multiple_float(const char *image_name, float *buffer,
                                              const ImageHeader &header,
                                              const FormatSetting &settings, float threshold,
                                              float replacement);

// The data file of one volume, without a text header: one that is there already stays as it is. The
// scaling is nowhere stated, so that the 16-bit writer returns its step, the real value of one
// stored unit, for the caller to keep. It counts an overflow without the line for each.
float write_image_matrix_wo_header_binary(const char *image_name, float *buffer,
                                          const ImageHeader &header, const FormatSetting &settings,
                                          float threshold, float replacement);
void write_image_matrix_wo_header_binary_float(const char *image_name, float *buffer,
                                               const ImageHeader &header,
                                               const FormatSetting &settings, float threshold,
                                               float replacement);

} // namespace velmorant
