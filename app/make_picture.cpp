#include "app/make_picture.h"

#include "app/montage.h"
#include "app/palette.h"
#include "app/picture.h"
#include "image/format_dispatch.h"
#include "image/image_geometry.h"
#include "image/image_header.h"
#include "image/normalisation.h"
#include "image/output_check.h"
#include "image/volume_pixels.h"
#include "prefs/preference_sets.h"
#include "prefs/settings.h"

#include <string>
#include <utility>

namespace velmorant
{

static ImageHeader read_study_header()
{
    ImageHeader header{};
    create_standard_image_header(header);
    read_header(FnImageHdr.data(), header, FileFormat.data());
    print_image_matrix_size(header);
    check_image_geometry(header, FnImageHdr.data());
    return header;
}

static PictureStyle choose_style(const RunRequest &request, const ImageHeader &header)
{
    return {.grid = lay_out_montage(header.num_slices, NumColumn,
                                    request.slice_width.value_or(header.x_dim),
                                    request.slice_height.value_or(header.y_dim)),
            .mapping = {.rescaling = NoRescaling,
                        .range = {.bottom = MinPixel, .top = request.max_pixel_value}},
            .gray = FlagGray != 0,
            .scale_bar = FlagScaleBar == 1,
            .bar_width = ScaleWidth,
            .bar_length = ScaleLength};
}

// No picture may take the place of what the run reads.
static void check_picture_name(const RunRequest &request)
{
    const std::string read[] = {header_file(FnImageHdr.data(), FileFormat.data()), FnImage.data(),
                                FnPalette.data(), request.preference_file.data(),
                                std::string(request.program_directory.data()) +
                                    GlobalPreferenceName};
    const std::string picture = FnTiff.data();
    check_output({&picture, 1}, read);
}

// The volume that the settings name, ready to be read.
static VolumePixels open_target(const ImageHeader &header, const ImageMatrix &selector)
{
    Block<float> buffer = allocate_box_buffer(header);
    return {open_volume(FnImage.data(), header, selector, FileFormat.data()), std::move(buffer)};
}

void make_picture(const RunRequest &request)
{
    load_palette(FnPalette.data());
    const ImageHeader header = read_study_header();
    check_picture_name(request);
    VolumePixels volume = open_target(header, request.selector);

    NormValues values{};
    norm_histogram(volume, INT_NormSet, values, INT_OutOfFieldCheck);
    print_normvalue(values);
    PictureStyle style = choose_style(request, header);
    if (request.max_pixel_value == 0.0F) { // the pixels are rescaled as they are rendered
        style.mapping.rescaling = {INT_Global / values.max, INT_OutOfFieldCheck,
                                   INT_OutOfFieldValue};
        style.mapping.range.top = INT_Global;
    }
    write_picture(FnTiff.data(), volume, style, measure_picture(style));
}

} // namespace velmorant
