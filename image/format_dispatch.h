#pragma once

// The one place that knows all file formats. A format is named by a keyword, compared exactly:
//
//   KEYWORD      FILES
//   CTI6         ECAT 6 matrix file
//   SHORTINT2B   raw data with a text header, signed 16-bit, big-endian
//   SHORTINT2L   the same, little-endian
//   FLOATB       raw data with a text header, 32-bit float, big-endian
//   FLOATL       the same, little-endian
//
// Byte order and element type belong to writing. Reading takes them from the text header, so the
// four raw keywords read each other's files.

#include "image/image_header.h"

namespace velmorant
{

// Fills the header from the image's own header, see `read_header_cti6` and `read_header_binary`. A
// keyword that is none of the five ends the run with "unspecified or unsupported file format" before
// a file is opened.
void read_header(const char *header_name, ImageHeader &header, const char *keyword);

// Fills `buffer` with the selected volume, in the standard orientation and in real units, see
// ecat/image_reader.h (the selector's plane has to be 1 for a whole volume) and image/raw_reader.h.
// Every keyword but CTI6 counts as raw, `read_header` having checked it; there, a data_format other
// than 1, 2 or 3 ends the run with "unspecified or unsupported file format".
void read_image_planes(const char *image_name, float *buffer, const ImageHeader &header,
                       const ImageMatrix &selector, const char *keyword);

} // namespace velmorant
