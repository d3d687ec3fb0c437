#include "image/image_geometry.h"

#include "prefs/error_report.h"

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

static constexpr std::int64_t MostPixels = std::numeric_limits<std::int32_t>::max();

static std::int64_t plane_pixels(const ImageHeader &header)
{
    return std::int64_t{header.x_dim} * header.y_dim;
}

// Whether a plane can be held: no negative dimension, and a pixel count within 32 bits.
static bool is_legal_plane(const ImageHeader &header)
{
    return header.x_dim >= 0 && header.y_dim >= 0 && plane_pixels(header) <= MostPixels;
}

// The same for a volume.
static bool is_legal(const ImageHeader &header)
{
    return is_legal_plane(header) && header.num_slices >= 0 &&
           plane_pixels(header) * header.num_slices <= MostPixels;
}

static std::string dimensions(const ImageHeader &header)
{
    return std::to_string(header.x_dim) + " x " + std::to_string(header.y_dim) + " x " +
           std::to_string(header.num_slices);
}

[[noreturn]] static void report_dimensions(const ImageHeader &header)
{
    print_error_message(2, "illegal image dimensions ", dimensions(header).c_str());
}

std::size_t checked_image_size(const ImageHeader &header)
{
    if (!is_legal(header)) {
        report_dimensions(header);
    }
    return image_size(header);
}

std::int32_t checked_plane_size(const ImageHeader &header)
{
    if (!is_legal_plane(header)) {
        report_dimensions(header);
    }
    return static_cast<std::int32_t>(plane_pixels(header));
}

std::size_t checked_volume_count(const ImageHeader &header)
{
    const auto size = static_cast<std::int64_t>(checked_image_size(header));
    const std::int64_t volumes = header.num_frames * (std::int64_t{header.num_beds} + 1);
    if (header.num_frames < 0 || header.num_beds < -1 || volumes > MostPixels ||
        volumes * size > MostPixels) {
        print_error_message(
            4, "illegal number of frames and beds: ", std::to_string(header.num_frames).c_str(),
            " and ", std::to_string(header.num_beds).c_str());
    }
    return static_cast<std::size_t>(volumes);
}

std::int32_t checked_study_size(const ImageHeader &header)
{
    return static_cast<std::int32_t>(checked_volume_count(header) * checked_image_size(header));
}

void check_image_geometry(const ImageHeader &header, const char *file_name)
{
    if (!is_legal(header)) {
        print_error_message(4, "illegal image dimensions ", dimensions(header).c_str(), " in ",
                            file_name);
    }
}

} // namespace velmorant
