#pragma once

#include "image/image_header.h"

#include <cstddef>

namespace velmorant
{

// Number of pixels of one volume: y_dim * x_dim * num_slices modulo 2^32. Exact for every geometry
// that passes `check_image_geometry`.
std::size_t image_size(const ImageHeader &header);

// Number of pixels of one volume, or the end of the run: a negative dimension, or more pixels than
// a signed 32-bit count can say, is reported as "illegal image dimensions 65536 x 65536 x 1". All
// that touches a pixel buffer takes its extent from here.
std::size_t checked_image_size(const ImageHeader &header);

// Number of pixels of one plane, x_dim * y_dim, with the same report.
std::int32_t checked_plane_size(const ImageHeader &header);

// Number of volumes of a file, num_frames * (num_beds + 1), or the end of the run where either
// factor is negative or all volumes together are more pixels than a signed 32-bit count can say:
// "illegal number of frames and beds: 2 and 70000".
std::size_t checked_volume_count(const ImageHeader &header);

// Number of pixels of all volumes of a file together, with the reports of both.
std::int32_t checked_study_size(const ImageHeader &header);

// The check of `checked_image_size` for a header just read, the report followed by " in " and the
// file's name.
void check_image_geometry(const ImageHeader &header, const char *file_name);

} // namespace velmorant
