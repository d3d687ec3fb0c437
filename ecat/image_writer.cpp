#include "ecat/image_writer.h"

#include "ecat/headers.h"
#include "ecat/matrix_file.h"
#include "ecat/matrix_number.h"
#include "ecat/matrix_writer.h"
#include "ecat/plane_order.h"
#include "image/allocate.h"
#include "image/cutoff.h"
#include "image/image_geometry.h"
#include "prefs/error_report.h"
#include "prefs/file_handle.h"
#include "prefs/numbers.h"
#include "prefs/settings.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <ctime>
#include <span>
#include <string_view>
#include <utility>

namespace velmorant
{

// Copies a text to the beginning of each field, at most as many characters as there is room for.
template <std::size_t... Widths>
static void put_text(std::string_view text, std::array<char, Widths> &...fields)
{
    (std::ranges::copy(text.substr(0, Widths), fields.begin()), ...);
}

static void put_date(MatMainHeader &main_header)
{
    const std::time_t now = std::time(nullptr);
    std::tm date{};
    localtime_r(&now, &date);
    main_header.scan_start_day = wrap_to_int16(date.tm_mday);
    main_header.scan_start_month = wrap_to_int16(date.tm_mon + 1);
    main_header.scan_start_year = wrap_to_int16(date.tm_year + 1900);
}

static constexpr std::size_t SourceNameLength = 18;

static MatMainHeader describe_study(const char *file_name, const ImageHeader &header)
{
    MatMainHeader main_header{};
    put_text(std::string_view(file_name).substr(0, SourceNameLength), main_header.source_file_name);
    main_header.software_version = 2;
    main_header.data_type = 2;
    main_header.system_type = 0;
    main_header.file_type = 2;
    put_date(main_header);
    main_header.isotope_halflife = 1.0F;
    put_text("n/a", main_header.node_id, main_header.isotope_code, main_header.radiopharmaceutical,
             main_header.operator_name, main_header.user_process_code);
    put_text("VELMORANT", main_header.study_name);
    put_text("Computer Generated", main_header.patient_name);
    main_header.patient_sex = 'U';
    main_header.patient_dexterity = 'U';
    put_text("0", main_header.patient_age, main_header.patient_height, main_header.patient_weight);
    put_text("Orlavesk Tarn", main_header.physician_name);
    put_text("VELMORANT Analysis", main_header.study_description);
    put_text("Hollin Centre", main_header.facility_name);
    main_header.num_planes = wrap_to_int16(header.num_slices);
    main_header.num_frames = wrap_to_int16(header.num_frames);
    main_header.num_gates = wrap_to_int16(header.num_gates);
    main_header.num_bed_positions = wrap_to_int16(header.num_beds);
    main_header.plane_separation = header.slice_thickness / 10.0F;
    return main_header;
}

// The origin is the middle pixel, a whole number of them.
static float middle_pixel(std::int32_t pixels)
{
    const std::int32_t middle = pixels / 2;
    return static_cast<float>(middle);
}

// What all planes have in common.
static MatImageSubheader describe_plane(const ImageHeader &header)
{
    MatImageSubheader subheader{};
    subheader.data_type = 2;
    subheader.num_dimensions = 2;
    subheader.x_dimension = wrap_to_int16(header.x_dim);
    subheader.y_dimension = wrap_to_int16(header.y_dim);
    subheader.x_origin = middle_pixel(header.x_dim);
    subheader.y_origin = middle_pixel(header.y_dim);
    subheader.recon_scale = 1.0F;
    subheader.pixel_size = header.pixel_size_x / 10.0F;
    subheader.slice_width = header.slice_thickness / 10.0F;
    subheader.frame_duration = 1;
    return subheader;
}

static FileHandle create_or_report(const char *file_name, const MatMainHeader &main_header)
{
    FileHandle file(mat_create(file_name, main_header));
    if (!file) {
        print_error_message(2, "can't open ", file_name);
    }
    return file;
}

// Creates a file with all planes of an image. fill_plane: sets the stored integers of a plane, and
// what its subheader says of them; called for plane after plane in the order of a buffer.
template <class FillPlane>
static std::int32_t write_planes(const char *file_name, const ImageHeader &header,
                                 const MatMainHeader &main_header, MatImageSubheader subheader,
                                 std::span<const std::int16_t> stored, FillPlane fill_plane)
{
    FileHandle file = create_or_report(file_name, main_header);
    // A plane that shares its number with an earlier one takes its place, wherever that is.
    const bool distinct = are_distinct(header.num_frames, header.num_slices, header.num_beds);
    std::int32_t directory_block = FirstDirectoryBlock;
    const auto write_next = [&](const ImageMatrix &matrix) {
        fill_plane(subheader);
        const std::uint32_t number =
            mat_numcod(matrix.frame, matrix.plane, matrix.gate, matrix.data, matrix.bed);
        const MatrixPlace place =
            write_new_image(file.get(), number, subheader, stored, directory_block);
        directory_block = distinct ? place.directory_block : FirstDirectoryBlock;
    };
    visit_planes({.frame = 1, .plane = 1, .gate = 1, .data = 0, .bed = 0},
                 {.frame = header.num_frames, .plane = header.num_slices, .bed = header.num_beds},
                 write_next);
    return mat_close(file.release());
}

// The largest magnitude of a plane, but a maximum with its own sign.
static float find_extreme(std::span<const float> pixels)
{
    float highest = -1e30F;
    float lowest = 1e30F;
    for (const float pixel : pixels) {
        highest = pixel > highest ? pixel : highest;
        lowest = pixel < lowest ? pixel : lowest;
    }
    const float lowest_square = lowest * lowest;
    return highest * highest >= lowest_square
               ? highest
               : static_cast<float>(std::sqrt(static_cast<double>(lowest_square)));
}

static std::int16_t stored_integer(float pixel, float scale)
{
    const double rounded = static_cast<double>(pixel / scale) + 0.5;
    return exceeds_int32(rounded) ? std::int16_t{0} : wrap_to_int16(truncate_to_int32(rounded));
}

static void store_pixels(std::span<const float> pixels, float scale, std::span<std::int16_t> stored)
{
    if (!(std::fabs(static_cast<double>(scale)) > 1e-20)) {
        std::ranges::fill(stored, std::int16_t{0});
        return;
    }
    for (std::size_t i = 0; i < pixels.size(); ++i) {
        stored[i] = stored_integer(pixels[i], scale);
    }
}

std::int32_t write_image_matrix_cti6(const char *file_name, const float *image,
                                     const ImageHeader &header, float cutoff, float replacement)
{
    const std::int16_t highest = INT_MaxPixelValue;
    const std::int32_t size = checked_plane_size(header);
    const auto count = static_cast<std::size_t>(size);
    const Block<std::int16_t> integers(allocate_short_int_zero(size, "in-plane buffer"));
    const Block<float> floats(allocate_float_zero(size, "in-plane buffer"));
    const std::span stored(integers.get(), count);
    const std::span pixels(floats.get(), count);

    const Cutoff lowest{cutoff, replacement};
    const auto fill_plane = [&](MatImageSubheader &subheader) {
        std::transform(image, image + size, pixels.begin(),
                       [&](float pixel) { return apply_cutoff(lowest, pixel); });
        image += size;
        subheader.scale_factor = find_extreme(pixels) / static_cast<float>(highest);
        store_pixels(pixels, subheader.scale_factor, stored);
    };
    MatImageSubheader subheader = describe_plane(header);
    subheader.image_max = highest;
    put_text("VELMORANT", subheader.annotation);
    return write_planes(file_name, header, describe_study(file_name, header), subheader, stored,
                        fill_plane);
}

std::int32_t create_image_matrix_cti6(const char *file_name, const ImageHeader &header)
{
    using namespace std::string_view_literals;
    const std::int32_t size = checked_plane_size(header);
    const Block<std::int16_t> zeros(allocate_short_int_zero(size, "in-plane buffer"));

    // What is left of the file's name stays behind the zero.
    MatMainHeader main_header = describe_study(file_name, header);
    put_text("n/a\0"sv, main_header.source_file_name);
    MatImageSubheader subheader = describe_plane(header);
    subheader.scale_factor = 1.0F;
    subheader.filter_code = 2;
    subheader.processing_code = 1;
    subheader.recon_start_day = 1;
    put_text("processed", subheader.annotation);
    return write_planes(file_name, header, main_header, subheader,
                        {zeros.get(), static_cast<std::size_t>(size)}, [](MatImageSubheader &) {});
}

} // namespace velmorant
