// tiffgen: turns one frame and bed of a tomographic brain image into one TIFF picture.

#include "app/banner.h"
#include "app/command_line.h"
#include "app/montage.h"
#include "app/palette.h"
#include "app/picture.h"
#include "image/allocate.h"
#include "image/format_dispatch.h"
#include "image/image_geometry.h"
#include "image/image_header.h"
#include "image/normalisation.h"
#include "prefs/preference_sets.h"
#include "prefs/run_environment.h"
#include "prefs/settings.h"

#include <cstdlib>

using namespace velmorant;

int main(int argc, char **argv)
{
    sioux_setting(batch_status(), 0);
    read_command_line(&argc, &argv);
    const char *program_path = argc > 0 ? argv[0] : "tiffgen";
    const auto arguments =
        argc > 0 ? Arguments(argv + 1, static_cast<std::size_t>(argc) - 1) : Arguments();

    Text program_directory{};
    get_program_directory(program_path, program_directory);
    read_global_preference(program_directory.data());

    RunRequest request{};
    get_local_preference_name(program_path, request.preference_file);
    find_preference_override(arguments, request.preference_file);
    read_local_preference(request.preference_file.data());

    print_banner();
    if (arguments.size() < 3) {
        print_usage();
        std::exit(-1);
    }

    read_positional_arguments(arguments, request);
    create_standard_image_matrix(request.selector);
    read_options(arguments, request);
    validate_flags();

    load_palette(FnPalette.data());

    ImageHeader header{};
    create_standard_image_header(header);
    read_header(FnImageHdr.data(), header, FileFormat.data());
    print_image_matrix_size(header);
    check_image_geometry(header, FnImageHdr.data());
    const MontageGrid grid =
        lay_out_montage(header.num_slices, NumColumn, request.slice_width.value_or(header.x_dim),
                        request.slice_height.value_or(header.y_dim));

    const auto size = static_cast<std::int32_t>(image_size(header));
    float *volume = allocate_float_zero(size, "ImgTarget");
    read_image_planes(FnImage.data(), volume, header, request.selector, FileFormat.data());

    NormValues values{};
    norm_histogram(volume, header, INT_NormSet, values, INT_OutOfFieldCheck);
    print_normvalue(values);
    if (request.max_pixel_value == 0.0F) {
        multiply_image_with_constant(volume, header, INT_Global / values.max, INT_OutOfFieldCheck,
                                     INT_OutOfFieldValue);
        request.max_pixel_value = INT_Global;
    }

    write_picture(FnTiff.data(), volume, header,
                  {.grid = grid,
                   .range = {.bottom = MinPixel, .top = request.max_pixel_value},
                   .gray = FlagGray != 0,
                   .scale_bar = FlagScaleBar == 1,
                   .bar_width = ScaleWidth,
                   .bar_length = ScaleLength});
    batchjob();
}
