// make_phantom KEYWORD IMAGE [X Y SLICES [FRAMES BEDS]]: writes a made-up PET study in one of the
// formats of image/format_dispatch.h: CTI6, SHORTINT2B, SHORTINT2L, FLOATB or FLOATL. Little-endian
// raw files are reversed on every axis, the others in the standard orientation. Without dimensions:
// 128 x 128 x 40, 4 frames, 2 beds. The keyword NIFTI makes a NIfTI image, IMAGE.nii or IMAGE.nii.gz, of the
// first bed.
//
// Ends with status 0; or with 1 after a message on standard error, or 2 after one about its
// arguments.

#include "examples/nifti_phantom.h"
#include "examples/phantom.h"
#include "image/allocate.h"
#include "image/cutoff.h"
#include "image/format_dispatch.h"
#include "image/image_geometry.h"
#include "image/output_check.h"
#include "prefs/numbers.h"
#include "prefs/ordinary_run.h"
#include "prefs/settings.h"

#include <array>
#include <cstdio>
#include <string_view>

using namespace velmorant;

// Every frame of every bed, in the order that the format wants.
static Block<float> make_study(const ImageHeader &header, const char *keyword)
{
    const std::size_t size = checked_image_size(header);
    Block<float> study(allocate_float(checked_study_size(header), "phantom"));
    for (std::int32_t frame = 1; frame <= header.num_frames; ++frame) {
        for (std::int32_t bed = 0; bed <= header.num_beds; ++bed) {
            float *volume = study.get() + volume_index(header, frame, bed, keyword) * size;
            phantom::fill_volume(volume, header, frame, bed);
        }
    }
    return study;
}

int main(int argc, char **argv)
{
    std::array<std::int32_t, 5> sizes{128, 128, 40, 4, 2};
    if (argc != 3 && argc != 6 && argc != 8) {
        std::fputs("Usage: make_phantom KEYWORD IMAGE [X Y SLICES [FRAMES BEDS]]\n", stderr);
        return 2;
    }
    for (int i = 3; i < argc; ++i) {
        const std::int32_t size = text_to_int32(argv[i]);
        if (size < 1) {
            std::fprintf(stderr, "make_phantom: not a size: %s\n", argv[i]);
            return 2;
        }
        sizes.at(static_cast<std::size_t>(i) - 3) = size;
    }
    const auto [x_dim, y_dim, num_slices, frames, beds] = sizes;
    const char *keyword = argv[1];
    const char *image = argv[2];
    begin_ordinary_run("make_phantom: not made: ", image);

#ifdef VELMORANT_NIFTI
    if (std::string_view(keyword) == "NIFTI") {
        const ImageHeader series = phantom::describe(x_dim, y_dim, num_slices, frames, 1);
        phantom::write_nifti(image, make_study(series, "FLOATL").get(), series);
        return end_ordinary_run();
    }
#endif
    ImageHeader header = phantom::describe(x_dim, y_dim, num_slices, frames, beds);
    if (std::string_view(keyword).ends_with('L')) {
        header.right_on_left = header.anterior_to_posterior = header.superior_to_inferior = 0;
    }
    check_output(image_files(image, keyword), {});
    check_format_limits(header, keyword);
    const Block<float> study = make_study(header, keyword);
    INT_MaxPixelValue = 32700; // what the extreme of an ECAT 6 plane becomes
    write_image_matrix_multiple(image, study.get(), header, create_format_setting(keyword), KeepAll,
                                0.0F);
    return end_ordinary_run();
}
