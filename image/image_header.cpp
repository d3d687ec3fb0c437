#include "image/image_header.h"

#include <cmath>
#include <cstdio>

namespace velmorant
{

void copy_ImageHeader(const ImageHeader &source, ImageHeader &destination)
{
    destination = source;
}

static bool sizes_agree(const ImageHeader &a, const ImageHeader &b)
{
    const auto agree = [&](float ImageHeader::*size) {
        return std::fabs(static_cast<double>(a.*size) - static_cast<double>(b.*size)) <= 1e-20;
    };
    return agree(&ImageHeader::pixel_size_x) && agree(&ImageHeader::pixel_size_y) &&
           agree(&ImageHeader::slice_thickness);
}

bool compare_ImageHeader(const ImageHeader &a, const ImageHeader &b)
{
    return a.num_frames == b.num_frames && a.num_gates == b.num_gates && a.num_data == b.num_data &&
           a.num_beds == b.num_beds && compare_ImageHeader_without_frame_gate_data_or_bed(a, b);
}

bool compare_ImageHeader_without_frame_gate_data_or_bed(const ImageHeader &a, const ImageHeader &b)
{
    return a.num_slices == b.num_slices && a.x_dim == b.x_dim && a.y_dim == b.y_dim &&
           sizes_agree(a, b);
}

void print_image_matrix_size(const ImageHeader &header)
{
    std::printf("XD=%3d;YD=%3d;SL=%2d;PX=%5.3f;PY=%5.3f;PZ=%5.3f;F=%2d;B=%1d\n", header.x_dim,
                header.y_dim, header.num_slices, static_cast<double>(header.pixel_size_x),
                static_cast<double>(header.pixel_size_y),
                static_cast<double>(header.slice_thickness), header.num_frames, header.num_beds);
}

void create_standard_image_header(ImageHeader &header)
{
    header = {};
    header.right_on_left = 1;
    header.anterior_to_posterior = 1;
    header.superior_to_inferior = 1;
    header.byte_order = 1;
    header.data_format = 1;
}

void create_standard_image_matrix(ImageMatrix &selector)
{
    selector = {.frame = 1, .plane = 1, .gate = 1, .data = 0, .bed = 0};
}

} // namespace velmorant
