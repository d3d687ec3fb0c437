#include "image/old_layout.h"

#include <cstdio>

namespace velmorant
{

void convert_header_old_to_new(const OldHeaderIntegers &old_ints, const OldHeaderSizes &old_sizes,
                               ImageHeader &header)
{
    create_standard_image_header(header);
    header.num_frames = old_ints[0];
    header.num_slices = old_ints[1];
    header.num_gates = old_ints[2];
    header.num_data = old_ints[3];
    header.num_beds = old_ints[4];
    header.x_dim = old_ints[5];
    header.y_dim = old_ints[6];
    header.pixel_size_x = old_sizes[0];
    header.pixel_size_y = old_sizes[0];
    header.slice_thickness = old_sizes[1];
}

void convert_header_new_to_old(const ImageHeader &header, OldHeaderIntegers &old_ints,
                               OldHeaderSizes &old_sizes)
{
    old_ints = {header.num_frames, header.num_slices, header.num_gates, header.num_data,
                header.num_beds,   header.x_dim,      header.y_dim};
    old_sizes = {header.pixel_size_x, header.slice_thickness};
    if (header.pixel_size_x != header.pixel_size_y) {
        std::puts("*** Warning: Inconsistent x-y pixel size ***");
    }
}

void convert_imagematrix_old_to_new(const OldImageMatrix &old_matrix, ImageMatrix &new_matrix)
{
    new_matrix = {.frame = old_matrix[0],
                  .plane = old_matrix[1],
                  .gate = old_matrix[2],
                  .data = old_matrix[3],
                  .bed = old_matrix[4]};
}

} // namespace velmorant
