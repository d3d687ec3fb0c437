#include "image/format_dispatch.h"

#include "ecat/image_reader.h"
#include "ecat/image_writer.h"
#include "ecat/matrix_number.h"
#include "image/raw_header.h"
#include "image/raw_reader.h"
#include "image/raw_writer.h"
#include "prefs/error_report.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <limits>
#include <string_view>

namespace velmorant
{

namespace
{

// A raw format, and what its files hold when they are written.
struct RawFormat {
    std::string_view keyword;
    std::int32_t byte_order;
    StoredType type;
};

} // namespace

static constexpr std::string_view EcatKeyword = "CTI6";
static constexpr std::array<RawFormat, 4> RawFormats{{{"SHORTINT2B", 1, StoredType::SignedShort},
                                                      {"SHORTINT2L", 0, StoredType::SignedShort},
                                                      {"FLOATB", 1, StoredType::Float},
                                                      {"FLOATL", 0, StoredType::Float}}};

[[noreturn]] static void report_unsupported_format()
{
    print_error_message(1, "unspecified or unsupported file format");
}

static const RawFormat &find_raw_format(std::string_view keyword)
{
    const auto *found = std::ranges::find(RawFormats, keyword, &RawFormat::keyword);
    if (found == RawFormats.end()) {
        report_unsupported_format();
    }
    return *found;
}

void read_header(const char *header_name, ImageHeader &header, const char *keyword)
{
    if (keyword == EcatKeyword) {
        read_header_cti6(header_name, header);
        return;
    }
    find_raw_format(keyword);
    read_header_binary(header_name, header);
}

// The type of a raw image's elements.
static StoredType stored_type(const ImageHeader &header)
{
    const auto type = static_cast<StoredType>(header.data_format);
    switch (type) {
    case StoredType::SignedShort:
    case StoredType::UnsignedShort:
    case StoredType::Float:
        return type;
    }
    report_unsupported_format();
}

StoredVolume open_volume(const char *image_name, const ImageHeader &header,
                         const ImageMatrix &selector, const char *keyword)
{
    return keyword == EcatKeyword
               ? open_volume_cti6(image_name, header, selector)
               : open_raw_volume(image_name, header, selector, stored_type(header));
}

void read_image_planes(const char *image_name, float *buffer, const ImageHeader &header,
                       const ImageMatrix &selector, const char *keyword)
{
    StoredVolume volume = open_volume(image_name, header, selector, keyword);
    read_box(volume, whole_volume(volume.header), buffer);
}

std::string header_file(const char *header_name, const char *keyword)
{
    if (keyword == EcatKeyword) {
        return header_name;
    }
    find_raw_format(keyword);
    return header_file_name(header_name);
}

std::vector<std::string> image_files(const char *image_name, const char *keyword)
{
    std::vector<std::string> files{image_name};
    if (keyword != EcatKeyword) {
        files.push_back(header_file(image_name, keyword));
    }
    return files;
}

static std::string describe_study(const ImageHeader &header)
{
    return std::to_string(header.num_frames) + " frames at " +
           std::to_string(std::int64_t{header.num_beds} + 1) + " beds of " +
           std::to_string(header.x_dim) + " x " + std::to_string(header.y_dim) + " x " +
           std::to_string(header.num_slices) + " pixels";
}

void check_format_limits(const ImageHeader &header, const char *keyword)
{
    if (keyword != EcatKeyword) {
        find_raw_format(keyword);
        return;
    }
    constexpr std::int32_t most_pixels = std::numeric_limits<std::int16_t>::max();
    if (header.x_dim > most_pixels || header.y_dim > most_pixels ||
        !are_distinct(header.num_frames, header.num_slices, header.num_beds)) {
        print_error_message(2, "an ECAT 6 file can't hold ", describe_study(header).c_str());
    }
}

std::int32_t unread_pixels(const ImageHeader &header, const char *keyword)
{
    return keyword == EcatKeyword ? unread_pixels_cti6(header) : 0;
}

std::size_t volume_index(const ImageHeader &header, std::int32_t frame, std::int32_t bed,
                         const char *keyword)
{
    const std::int64_t frames = header.num_frames;
    const std::int64_t beds = std::int64_t{header.num_beds} + 1;
    const std::int64_t before = std::int64_t{frame} - 1;
    return static_cast<std::size_t>(keyword == EcatKeyword ? before * beds + bed
                                                           : frames * bed + before);
}

static bool is_ecat(const FormatSetting &settings)
{
    return format_keyword(settings) == EcatKeyword;
}

static void write_ecat(const char *image_name, const float *buffer, const ImageHeader &header,
                       float threshold, float replacement)
{
    if (write_image_matrix_cti6(image_name, buffer, header, threshold, replacement) != 0) {
        print_error_message(2, "can't write ", image_name);
    }
}

// Sets the header's storage to that of a raw format. Returns the type of its elements.
static StoredType set_storage(ImageHeader &header, const FormatSetting &settings)
{
    const RawFormat &format = find_raw_format(format_keyword(settings));
    header.byte_order = format.byte_order;
    header.data_format = static_cast<std::int32_t>(format.type);
    return format.type;
}

void write_image_header(const char *image_name, const float *buffer, ImageHeader &header,
                        const FormatSetting &settings, float threshold, float /*replacement*/)
{
    if (is_ecat(settings)) {
        std::puts("header information will be written with image data...");
        return;
    }
    if (set_storage(header, settings) == StoredType::Float) {
        write_image_header_binary_float(image_name, buffer, header, settings);
    } else {
        write_image_header_binary(image_name, buffer, header, settings, threshold);
    }
}

using RawWriter = decltype(write_image_matrix_binary);

// Writes an image with its header. write_floats, write_shorts: what does so in raw formats.
static void write_image(const char *image_name, float *buffer, ImageHeader &header,
                        const FormatSetting &settings, float threshold, float replacement,
                        RawWriter *write_floats, RawWriter *write_shorts)
{
    if (is_ecat(settings)) {
        write_ecat(image_name, buffer, header, threshold, replacement);
        return;
    }
    const StoredType type = set_storage(header, settings);
    header.data_offset = 0;
    const auto write = type == StoredType::Float ? write_floats : write_shorts;
    write(image_name, buffer, header, settings, threshold, replacement);
}

void write_image_matrix(const char *image_name, float *buffer, ImageHeader &header,
                        const FormatSetting &settings, float threshold, float replacement)
{
    write_image(image_name, buffer, header, settings, threshold, replacement,
                write_image_matrix_binary_float, write_image_matrix_binary);
}

void write_image_matrix_multiple(const char *image_name, float *buffer, ImageHeader &header,
                                 const FormatSetting &settings, float threshold, float replacement)
{
    write_image(image_name, buffer, header, settings, threshold, replacement,
                write_image_matrix_binary_multiple_float, write_image_matrix_binary_multiple);
}

float write_image_matrix_wo_header(const char *image_name, float *buffer, ImageHeader &header,
                                   const FormatSetting &settings, float threshold,
                                   float replacement)
{
    if (is_ecat(settings)) {
        std::puts("images need to be written with a header in the CTI6 format...");
        write_ecat(image_name, buffer, header, threshold, replacement);
        return 0.0F;
    }
    if (set_storage(header, settings) == StoredType::Float) {
        write_image_matrix_wo_header_binary_float(image_name, buffer, header, settings, threshold,
                                                  replacement);
        return 1.0F;
    }
    return write_image_matrix_wo_header_binary(image_name, buffer, header, settings, threshold,
                                               replacement);
}

} // namespace velmorant
