// convert_image FROM-KEYWORD IMAGE TO-KEYWORD OUTPUT: writes an image, every frame and bed of it, in
// another format or byte order. The keywords are those of image/format_dispatch.h: CTI6, SHORTINT2B,
// SHORTINT2L, FLOATB and FLOATL. Of a gated study the first gate is taken.
//
// Ends with status 0; or with 1 after a message on standard error, or 2 after one about its
// arguments. Warnings go to standard error, too.

#include "image/allocate.h"
#include "image/cutoff.h"
#include "image/format_dispatch.h"
#include "image/image_geometry.h"
#include "image/output_check.h"
#include "prefs/error_report.h"
#include "prefs/ordinary_run.h"
#include "prefs/settings.h"

#include <cstdio>
#include <string>

using namespace velmorant;

// Reads every frame and bed, in the order in which the format `to` wants them.
static Block<float> read_study(const char *from, const char *image, const ImageHeader &header,
                               const char *to)
{
    const std::size_t size = checked_image_size(header);
    Block<float> study(allocate_float(checked_study_size(header), "study"));
    for (std::int32_t frame = 1; frame <= header.num_frames; ++frame) {
        for (std::int32_t bed = 0; bed <= header.num_beds; ++bed) {
            const ImageMatrix volume{.frame = frame, .plane = 1, .gate = 1, .data = 0, .bed = bed};
            float *place = study.get() + volume_index(header, frame, bed, to) * size;
            read_image_planes(image, place, header, volume, from);
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
    begin_ordinary_run("convert_image: not converted: ", image);
    check_output(image_files(output, to), image_files(image, from));

    ImageHeader header{};
    create_standard_image_header(header);
    read_header(image, header, from);
    header.num_gates = 1;
    check_format_limits(header, to);
    if (checked_study_size(header) == 0) {
        print_error_message(2, "no pixels in ", image);
    }
    if (unread_pixels(header, from) > 0) {
        std::puts("warning: each plane's end, short of a block of 256 pixels, is read as 0");
    }
    const Block<float> study = read_study(from, image, header, to);

    INT_MaxPixelValue = 32700; // what the extreme of an ECAT 6 plane becomes
    write_image_matrix_multiple(output, study.get(), header, create_format_setting(to), KeepAll,
                                0.0F);
    read_header(output, header, to); // or it is not converted
    return end_ordinary_run();
}
