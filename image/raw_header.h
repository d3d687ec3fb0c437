#pragma once

// The text header (".hdr") of a raw image: one setting per line, its value after ":=". The lines,
// their order and their keys are the table in image/raw_header.cpp, which both the reader and the
// writer follow.
//
// A key counts wherever in a line it stands, and in whatever case (see `test_strings`); a line is
// read for every key that it holds, and of two lines with the same key the later one wins. A line
// that holds "end of header" ends the header.

#include "image/image_header.h"
#include "image/stored_pixels.h"

#include <cstdio>
#include <string>

namespace velmorant
{

// How a written header ends. Readers stop at the first of these endings only; they read on past the
// other, which does not matter, because nothing follows it.
enum class HeaderEnd { BeforeData, HeaderOnly };

// The name of an image's text header: what stands before the last "." of the whole name (folders
// included), or the whole name where there is none, with ".hdr" after it. A result of more than
// 199 characters ends the run with "header file name too long: " and the result.
std::string header_file_name(const char *image_name);

// Reads the text header that belongs to the image `header_name`. num_frames, num_gates and
// data_format become 1, num_beds and num_data 0; then each key that occurs sets its field, and a
// field whose key does not occur keeps what it held. Ends the run as a `TextFile` does; with
// "unspecified byte order in the header" where that line holds neither BIGENDIAN nor LITTLEENDIAN
// (in any case); with "'pixel scaling value' not defined in " and the header's name where the
// scaling is zero or missing, for float data as well; with "can't find a preference value" where a
// key has no ":=" after it.
void read_header_binary(const char *header_name, ImageHeader &header);

// Ends the run with "unspecified byte order in the header" where byte_order is neither 0 nor 1.
void check_byte_order(const ImageHeader &header);

// Prints a text header from the record's own values. Ends the run as `check_byte_order` does, one
// line printed.
void print_text_header(std::FILE *file, const ImageHeader &header, StoredType type, HeaderEnd end);

// Writes the text header that belongs to `image_name`.
// Ends the run with "can't open " or "can't write " and the header's name, or, one line written, as
// `check_byte_order` does.
void write_text_header(const char *image_name, const ImageHeader &header, StoredType type,
                       HeaderEnd end);

} // namespace velmorant
