#pragma once

// The one description of an image in memory, and the selector of a volume or plane in its file.
//
// Pixel buffer: one volume is x_dim * y_dim * num_slices 32-bit floats in one block, x fastest,
// then y, then slice; pixel (x, y, z), counted from 0, is element z * (x_dim * y_dim) + y * x_dim +
// x. Readers fill it in the standard orientation (the subject's right on the image's left, rows
// from anterior to posterior, slices from superior to inferior) and in the image's real units. The
// caller allocates it, sized by `image_size` (image/image_geometry.h), and owns it.

#include <cstdint>

namespace velmorant
{

struct ImageHeader {
    std::int32_t num_frames; // time frames in the file
    std::int32_t num_slices; // slices (planes) of one volume
    std::int32_t num_gates;
    std::int32_t num_data;
    std::int32_t num_beds; // bed positions after the first: a file holds num_beds + 1 beds
    std::int32_t x_dim;    // pixels per row
    std::int32_t y_dim;    // rows per slice
    float pixel_size_x;    // mm
    float pixel_size_y;    // mm
    float slice_thickness; // mm
    float pixel_scaling;   // real value of a stored 16-bit 32700 (raw formats)
    // Orientation of the file, axis by axis: 1 = as in the standard orientation, 0 = reversed.
    std::int32_t right_on_left;
    std::int32_t anterior_to_posterior;
    std::int32_t superior_to_inferior;
    std::int32_t data_offset; // bytes before the first volume of a raw data file
    std::int32_t byte_order;  // 1 = big-endian, 0 = little-endian
    std::int32_t data_format; // 1 = signed 16-bit, 2 = unsigned 16-bit, 3 = 32-bit float
};

// One matrix of a file. Frames, planes and gates count from 1, data sets and beds from 0.
struct ImageMatrix {
    std::int32_t frame;
    std::int32_t plane;
    std::int32_t gate;
    std::int32_t data;
    std::int32_t bed;
};

void copy_ImageHeader(const ImageHeader &source, ImageHeader &destination);

// Whether two headers describe the same geometry: the seven leading integers (without: only
// num_slices, x_dim and y_dim) are equal, and each of the three sizes differs by no more than
// 1e-20, which amounts to exact equality. Scaling, orientation and storage are not compared.
bool compare_ImageHeader(const ImageHeader &a, const ImageHeader &b);
bool compare_ImageHeader_without_frame_gate_data_or_bed(const ImageHeader &a, const ImageHeader &b);

// Prints dimensions, pixel sizes, frames and beds as one line on standard output.
void print_image_matrix_size(const ImageHeader &header);

// What a header holds before an image's own is read: the standard orientation, big-endian signed
// 16-bit elements, and 0 for everything else.
void create_standard_image_header(ImageHeader &header);

// Frame 1, plane 1, gate 1, data set 0, bed 0.
void create_standard_image_matrix(ImageMatrix &selector);

} // namespace velmorant
