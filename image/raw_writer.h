#pragma once

// Writing raw images: the text header and the data file, in the layout of image/raw_header.h and
// image/raw_reader.h.
//
// Common to all writers:
//   buffer       in the standard orientation; turned to the header's orientation while it is
//   written
//                and back afterwards.
//   header       says geometry, orientation, byte order, data offset (that many zero bytes precede
//                the data) and the numbers that the text header states.
//   threshold, replacement   a pixel below the threshold is written as the replacement.
// The writers named ..._float store single-precision floats and state a scaling of 32700; the
// others store signed 16-bit integers and state the scaling that `choose_short_scaling` finds for
// the buffer with the threshold. An integer that overflows (see `quantise`) is stored as 0 after a
// line "sval %f; fval %f; quant %f" with its value, the stated scaling and the integer; once the
// file is written, "*** overflow pixel values (Signed Short Integers) set to 0 ***" follows.
//
// They end the run with "can't open " or "can't write " and the file's name; with "unspecified byte
// order in the header"; with the reports of `flip_image`.

#include "image/image_header.h"

#include <array>

namespace velmorant
{

// The output format as the caller sets it: a format keyword, and how many 16-bit units stand
// for 1.0 (0: the volume's own extreme becomes 32700).
struct FormatSetting {
    std::array<char, 256> keyword;
    float quantisation;
};

// The text header alone, as for a file whose data follow later.
void write_image_header_binary(const char *image_name, const float *buffer,
                               const ImageHeader &header, const FormatSetting &settings,
                               float threshold);
void write_image_header_binary_float(const char *image_name, const float *buffer,
                                     const ImageHeader &header, const FormatSetting &settings);

// The text header and one volume.
void write_image_matrix_binary(const char *image_name, float *buffer, const ImageHeader &header,
                               const FormatSetting &settings, float threshold, float replacement);
void write_image_matrix_binary_float(const char *image_name, float *buffer,
                                     const ImageHeader &header, const FormatSetting &settings,
                                     float threshold, float replacement);

// The text header and every volume of a file: num_frames * (num_beds + 1) volumes behind one
// another, all frames of bed 0, then those of bed 1 and so on. One scaling serves them all. The
// text header states a data offset of 0 whatever the record holds.
void write_image_matrix_binary_multiple(const char *image_name, float *buffer,
                                        const ImageHeader &header, const FormatSetting &settings,
                                        float threshold, float replacement);
void write_image_matrix_binary_multiple_float(const char *image_name, float *buffer,
                                              const ImageHeader &header,
                                              const FormatSetting &settings, float threshold,
                                              float replacement);

} // namespace velmorant
