#include "image/image_header.h"

#include "prefs/error_report.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>
#include <string>

namespace velmorant
{

std::size_t image_size(const ImageHeader &header)
{
    const std::uint32_t size = static_cast<std::uint32_t>(header.y_dim) *
                               static_cast<std::uint32_t>(header.x_dim) *
                               static_cast<std::uint32_t>(header.num_slices);
    return size;
}

static constexpr std::int64_t most_pixels = std::numeric_limits<std::int32_t>::max();

// Whether one volume can be held: no negative dimension, and a pixel count within 32 bits.
static bool is_legal(const ImageHeader &header)
{
    if (std::min({header.x_dim, header.y_dim, header.num_slices}) < 0) {
        return false;
    }
    const std::int64_t plane = std::int64_t{header.x_dim} * header.y_dim;
    return plane == 0 || header.num_slices <= most_pixels / plane;
}

static std::string dimensions(const ImageHeader &header)
{
    return std::to_string(header.x_dim) + " x " + std::to_string(header.y_dim) + " x " +
           std::to_string(header.num_slices);
}

std::size_t checked_image_size(const ImageHeader &header)
{
    if (!is_legal(header)) {
        print_error_message(2, "illegal image dimensions ", dimensions(header).c_str());
    }
    return image_size(header);
}

std::size_t checked_volume_count(const ImageHeader &header)
{
    const auto size = static_cast<std::int64_t>(checked_image_size(header));
    const std::int64_t volumes = header.num_frames * (std::int64_t{header.num_beds} + 1);
    if (volumes < 0 || volumes > most_pixels || volumes * size > most_pixels) {
        print_error_message(
            4, "illegal number of frames and beds: ", std::to_string(header.num_frames).c_str(),
            " and ", std::to_string(header.num_beds).c_str());
    }
    return static_cast<std::size_t>(volumes);
}

void check_image_geometry(const ImageHeader &header, const char *file_name)
{
    if (!is_legal(header)) {
        print_error_message(4, "illegal image dimensions ", dimensions(header).c_str(), " in ",
                            file_name);
    }
}

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
    // Written so that a NaN counts as unequal to everything, itself included.
    if (!(header.pixel_size_x == header.pixel_size_y)) {
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
