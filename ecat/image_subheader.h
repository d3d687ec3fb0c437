#pragma once

// Image subheader: the first block of each image plane. After it come x_dimension * y_dimension
// signed 16-bit integers, row after row. Which plane of which frame it is, only the directory says.
// Bytes that no field covers are not read.

#include "ecat/header_fields.h"

#include <array>
#include <cstdint>
#include <tuple>

namespace velmorant
{

struct MatImageSubheader {
    std::int16_t data_type;      // not looked at: images are signed 16-bit integers
    std::int16_t num_dimensions; // 2 for a plane
    std::int16_t x_dimension;    // pixels per row
    std::int16_t y_dimension;    // rows
    float x_origin;
    float y_origin;
    float recon_scale;      // zoom of the reconstruction
    float scale_factor;     // real value of one stored unit
    std::int16_t image_min; // smallest stored integer
    std::int16_t image_max; // largest stored integer
    float pixel_size;       // cm, the same in x and y
    float slice_width;      // cm
    std::int32_t frame_duration;
    std::int32_t frame_start_time;
    std::int16_t slice_location;
    std::int16_t recon_start_hour;
    std::int16_t recon_start_minute;
    std::int16_t recon_start_second;
    std::int32_t recon_duration;
    std::int16_t filter_code;
    std::int32_t scan_matrix_number;
    std::int32_t norm_matrix_number;
    std::int32_t attenuation_matrix_number;
    float image_rotation;
    float plane_efficiency_factor;
    float decay_correction_factor;
    float loss_correction_factor;
    std::int16_t processing_code;
    std::int16_t quantification_units;
    std::int16_t recon_start_day;
    std::int16_t recon_start_month;
    std::int16_t recon_start_year;
    float calibration_factor;
    float well_counter_factor;
    std::array<float, 6> filter_parameters;
    std::array<char, 40> annotation; // free text
};

// clang-format off
inline constexpr std::tuple ImageSubheaderFields{
    // TYPE             BYTE  MEMBER
    field<Int16>(       126, &MatImageSubheader::data_type),
    field<Int16>(       128, &MatImageSubheader::num_dimensions),
    field<Int16>(       132, &MatImageSubheader::x_dimension),
    field<Int16>(       134, &MatImageSubheader::y_dimension),
    field<VaxFloat>(    160, &MatImageSubheader::x_origin),
    field<VaxFloat>(    164, &MatImageSubheader::y_origin),
    field<VaxFloat>(    168, &MatImageSubheader::recon_scale),
    field<VaxFloat>(    172, &MatImageSubheader::scale_factor),
    field<Int16>(       176, &MatImageSubheader::image_min),
    field<Int16>(       178, &MatImageSubheader::image_max),
    field<VaxFloat>(    184, &MatImageSubheader::pixel_size),
    field<VaxFloat>(    188, &MatImageSubheader::slice_width),
    field<Int32>(       192, &MatImageSubheader::frame_duration),
    field<Int32>(       196, &MatImageSubheader::frame_start_time),
    field<Int16>(       200, &MatImageSubheader::slice_location),
    field<Int16>(       202, &MatImageSubheader::recon_start_hour),
    field<Int16>(       204, &MatImageSubheader::recon_start_minute),
    field<Int16>(       206, &MatImageSubheader::recon_start_second),
    field<Int32>(       208, &MatImageSubheader::recon_duration),
    field<Int16>(       236, &MatImageSubheader::filter_code),
    field<Int32>(       238, &MatImageSubheader::scan_matrix_number),
    field<Int32>(       242, &MatImageSubheader::norm_matrix_number),
    field<Int32>(       246, &MatImageSubheader::attenuation_matrix_number),
    field<VaxFloat>(    296, &MatImageSubheader::image_rotation),
    field<VaxFloat>(    300, &MatImageSubheader::plane_efficiency_factor),
    field<VaxFloat>(    304, &MatImageSubheader::decay_correction_factor),
    field<VaxFloat>(    308, &MatImageSubheader::loss_correction_factor),
    field<Int16>(       376, &MatImageSubheader::processing_code),
    field<Int16>(       380, &MatImageSubheader::quantification_units),
    field<Int16>(       382, &MatImageSubheader::recon_start_day),
    field<Int16>(       384, &MatImageSubheader::recon_start_month),
    field<Int16>(       386, &MatImageSubheader::recon_start_year),
    field<VaxFloat>(    388, &MatImageSubheader::calibration_factor),
    field<VaxFloat>(    392, &MatImageSubheader::well_counter_factor),
    field<VaxFloats<6>>(396, &MatImageSubheader::filter_parameters),
    field<Chars<40>>(   420, &MatImageSubheader::annotation)};
// clang-format on
static_assert(fields_fit(ImageSubheaderFields));

} // namespace velmorant
