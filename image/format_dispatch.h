#pragma once

// The one place that knows all file formats. A format is named by a keyword, compared exactly:
//
//   KEYWORD      FILES                                              BYTE_ORDER   DATA_FORMAT
//   CTI6         ECAT 6 matrix file
//   SHORTINT2B   raw data with a text header, signed 16-bit             1            1
//   SHORTINT2L   the same, little-endian                                0            1
//   FLOATB       raw data with a text header, 32-bit float              1            3
//   FLOATL       the same, little-endian                                0            3
//
// Byte order and element type belong to writing, which puts them into the caller's header. Reading
// takes them from the text header, so the four raw keywords read each other's files.
//
// A keyword that is none of the five ends the run with "unspecified or unsupported file format".
// Here and below, what ends the run does so by `print_error_message`: a line on standard output,
// and status 0; or, for a block of an ECAT 6 file, by a line and status -1.

#include "image/format_setting.h"
#include "image/image_header.h"
#include "image/stored_volume.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace velmorant
{

// Fills the header from the image's own header, see `read_header_cti6` and `read_header_binary`.
// What that doesn't say stays as it was: begin with `create_standard_image_header`. The keyword is
// checked before a file is opened.
void read_header(const char *header_name, ImageHeader &header, const char *keyword);

// Opens the selected volume, which is then read box by box (image/stored_volume.h), see
// ecat/image_reader.h (the selector's plane has to be 1 for a whole volume) and image/raw_reader.h.
// Every keyword but CTI6 counts as raw, `read_header` having checked it; there, a data_format other
// than 1, 2 or 3 ends the run with "unspecified or unsupported file format".
StoredVolume open_volume(const char *image_name, const ImageHeader &header,
                         const ImageMatrix &selector, const char *keyword);

// Opens the selected volume and reads it into `buffer`, in the standard orientation and in real
// units.
void read_image_planes(const char *image_name, float *buffer, const ImageHeader &header,
                       const ImageMatrix &selector, const char *keyword);

// The file that `read_header` reads under a header name.
std::string header_file(const char *header_name, const char *keyword);

// The files of an image: its data and, in raw formats, its text header.
std::vector<std::string> image_files(const char *image_name, const char *keyword);

// Ends the run where a format can't hold every volume of an image. Raw formats always can; CTI6 has
// room for 4096 frames, 16 beds and 256 slices of 32767 pixels each way: "an ECAT 6 file can't hold
// 3 frames at 20 beds of 128 x 128 x 40 pixels". The writers themselves let larger numbers wrap
// around.
void check_format_limits(const ImageHeader &header, const char *keyword);

// How many pixels at the end of each plane a format's reader leaves 0: none in raw formats, those
// that don't fill a block of 256 in CTI6.
std::int32_t unread_pixels(const ImageHeader &header, const char *keyword);

// Where a frame (from 1) and bed (from 0) lie among all volumes of a file, counted from 0, when
// `write_image_matrix_multiple` takes them from a buffer: CTI6 wants bed by bed within a frame, the
// raw formats, which every other keyword counts as, want frame by frame within a bed.
std::size_t volume_index(const ImageHeader &header, std::int32_t frame, std::int32_t bed,
                         const char *keyword);

// Common to the writers below:
//   buffer       pixels in the standard orientation; raw formats turn them to the header's while
//                they are written, and back afterwards
//   header       the raw formats set its byte_order and data_format, and it keeps them: the record
//                with which an image was read no longer goes with that image. Its orientation is
//                that of the written file; CTI6, which has none, leaves the record as it is
//   settings     the keyword, and the quantisation of the raw 16-bit formats
//   threshold, replacement   a pixel below the threshold is written as the replacement; `KeepAll`
//                (image/cutoff.h) as the threshold keeps all
// CTI6 scales its planes to `INT_MaxPixelValue`, which a program that reads no preferences has to
// set. What is stored how, and what ends the run: image/raw_writer.h and ecat/image_writer.h.

// Writes the text header alone, which states the record's data_offset. CTI6 has no header file:
// prints "header information will be written with image data..." and writes nothing.
void write_image_header(const char *image_name, const float *buffer, ImageHeader &header,
                        const FormatSetting &settings, float threshold, float replacement);

// Writes one volume and its text header. Sets data_offset to 0 in raw formats. CTI6 always writes
// the whole study that the header describes, as `write_image_matrix_multiple` does: for one volume,
// num_frames is to be 1, and num_beds 0.
void write_image_matrix(const char *image_name, float *buffer, ImageHeader &header,
                        const FormatSetting &settings, float threshold, float replacement);

// Writes every volume of a file, in the order of `volume_index`, and a text header. Sets
// data_offset to 0 in raw formats.
void write_image_matrix_multiple(const char *image_name, float *buffer, ImageHeader &header,
                                 const FormatSetting &settings, float threshold, float replacement);

// Writes the data of one volume alone, after data_offset zero bytes. Returns the real value of one
// stored unit, which is stated nowhere: the step of the 16-bit formats, or 1 for the float formats.
// CTI6 has no bare data: prints "images need to be written with a header in the CTI6 format...",
// writes as `write_image_matrix` does and returns 0, because each plane states its own.
float write_image_matrix_wo_header(const char *image_name, float *buffer, ImageHeader &header,
                                   const FormatSetting &settings, float threshold,
                                   float replacement);

} // namespace velmorant
