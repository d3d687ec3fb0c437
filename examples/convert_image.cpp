// convert_image FROM-KEYWORD IMAGE TO-KEYWORD OUTPUT: writes an image, every frame and bed of it, in
// another format or byte order. The keywords are those of image/format_dispatch.h: CTI6, SHORTINT2B,
// SHORTINT2L, FLOATB and FLOATL. Of a gated study the first gate is taken.
//
// Ends with status 0; or with 1 after a message on standard error, or 2 after one about its
// arguments. Warnings go to standard error, too.

#include "examples/ordinary_ending.h"
#include "image/allocate.h"
#include "image/format_dispatch.h"
#include "image/image_geometry.h"
#include "image/raw_header.h"
#include "prefs/error_report.h"
#include "prefs/settings.h"

#include <cstdio>
#include <filesystem>
#include <limits>
#include <string_view>

using namespace velmorant;

// Whether the output, or its text header, would take the place of the image's own.
static bool would_replace(std::string_view from, const char *image, std::string_view to,
                          const char *output)
{
    std::error_code none_there;
    const bool have_text_headers = from != "CTI6" && to != "CTI6";
    return std::filesystem::equivalent(image, output, none_there) ||
           (have_text_headers && std::filesystem::equivalent(header_file_name(image),
                                                             header_file_name(output), none_there));
}

// Reads every frame and bed, in the order in which the format `to` wants them.
static Block<float> read_study(const char *from, const char *image, const ImageHeader &header,
                               const char *to)
{
    const std::size_t size = checked_image_size(header);
    const auto total = static_cast<std::int32_t>(checked_volume_count(header) * size);
    Block<float> study(allocate_float(total, "study"));
    for (std::int32_t frame = 1; frame <= header.num_frames; ++frame) {
        for (std::int32_t bed = 0; bed <= header.num_beds; ++bed) {
            float *volume = study.get() + volume_index(header, frame, bed, to) * size;
            read_image_planes(image, volume, header, {frame, 1, 1, 0, bed}, from);
        }
    }
    return study;
}

int main(int argc, char **argv)
{
    if (argc != 5) {
        std::fputs("Usage: convert_image FROM-KEYWORD IMAGE TO-KEYWORD OUTPUT\n", stderr);
        return 2;
    }
    const char *from = argv[1];
    const char *image = argv[2];
    const char *to = argv[3];
    const char *output = argv[4];
    examples::begin();
    if (would_replace(from, image, to, output)) {
        print_error_message(2, "the output would replace the image: ", output);
    }

    ImageHeader header{};
    create_standard_image_header(header);
    read_header(image, header, from);
    const Block<float> study = read_study(from, image, header, to);

    header.num_gates = 1;
    INT_MaxPixelValue = 32767; // the highest integer in an ECAT 6 file
    constexpr float keep_all = -std::numeric_limits<float>::infinity();
    write_image_matrix_multiple(output, study.get(), header, create_format_setting(to), keep_all,
                                0.0F);
    return examples::succeed();
}
