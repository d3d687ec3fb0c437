#include "app/make_picture.h"

#include "app/montage.h"
#include "app/palette.h"
#include "app/picture.h"
#include "image/allocate.h"
#include "image/format_dispatch.h"
#include "image/image_geometry.h"
#include "image/image_header.h"
#include "image/normalisation.h"
#include "image/output_check.h"
#include "prefs/preference_sets.h"
#include "prefs/settings.h"

#include <string>
#include <vector>

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
    std::vector<std::string> read = image_files(FnImageHdr.data(), FileFormat.data());
    read.insert(read.end(), {FnImage.data(), FnPalette.data(), request.preference_file.data(),
                             std::string(request.program_directory.data()) + GlobalPreferenceName});
    const std::string picture = FnTiff.data();
    check_output({&picture, 1}, read);
}

void make_picture(const RunRequest &request)
{
    load_palette(FnPalette.data());
    const ImageHeader header = read_study_header();
    check_picture_name(request);
    PictureStyle style = choose_style(request, header);
    const PictureSize picture_size = measure_picture(style);

    const auto size = static_cast<std::int32_t>(image_size(header));
    const Block<float> volume(allocate_float_zero(size, "ImgTarget"));
    read_image_planes(FnImage.data(), volume.get(), header, request.selector, FileFormat.data());

    NormValues values{};
    norm_histogram(volume.get(), header, INT_NormSet, values, INT_OutOfFieldCheck);
    print_normvalue(values);
    if (request.max_pixel_value == 0.0F) {
        // Done as the pixels are rendered: a pass over the volume less.
        style.mapping.rescaling = {INT_Global / values.max, INT_OutOfFieldCheck,
                                   INT_OutOfFieldValue};
        style.mapping.range.top = INT_Global;
    }
    write_picture(FnTiff.data(), volume.get(), header, style, picture_size);
}

} // namespace velmorant
