#pragma once

// Scan subheader: the first block of each sinogram plane. After it come 16-bit integers.

#include "ecat/header_fields.h"

#include <array>
#include <cstdint>
#include <tuple>

namespace velmorant
{

struct MatScanSubheader {
    std::int16_t data_type;
    std::int16_t x_dimension;
    std::int16_t y_dimension;
    std::int16_t smoothing;
    std::int16_t processing_code;
    float sample_distance;
    float isotope_halflife;
    std::int16_t frame_duration_seconds;
    std::int32_t gate_duration;
    std::int32_t r_wave_offset;
    float scale_factor;
    std::int16_t scan_min;
    std::int16_t scan_max;
    std::int32_t prompts;
    std::int32_t delayed;
    std::int32_t multiples;
    std::int32_t net_trues;
    std::array<float, 16> corrected_singles;
    std::array<float, 16> uncorrected_singles;
    float total_average_corrected;
    float total_average_uncorrected;
    std::int32_t total_coincidence_rate;
    std::int32_t frame_start_time;
    std::int32_t frame_duration;
    float loss_correction_factor;
};

// clang-format off
inline constexpr std::tuple ScanSubheaderFields{
    // TYPE              BYTE  MEMBER
    field<Int16>(        126, &MatScanSubheader::data_type),
    field<Int16>(        132, &MatScanSubheader::x_dimension),
    field<Int16>(        134, &MatScanSubheader::y_dimension),
    field<Int16>(        136, &MatScanSubheader::smoothing),
    field<Int16>(        138, &MatScanSubheader::processing_code),
    field<VaxFloat>(     146, &MatScanSubheader::sample_distance),
    field<VaxFloat>(     166, &MatScanSubheader::isotope_halflife),
    field<Int16>(        170, &MatScanSubheader::frame_duration_seconds),
    field<Int32>(        172, &MatScanSubheader::gate_duration),
    field<Int32>(        176, &MatScanSubheader::r_wave_offset),
    field<VaxFloat>(     182, &MatScanSubheader::scale_factor),
    field<Int16>(        192, &MatScanSubheader::scan_min),
    field<Int16>(        194, &MatScanSubheader::scan_max),
    field<Int32>(        196, &MatScanSubheader::prompts),
    field<Int32>(        200, &MatScanSubheader::delayed),
    field<Int32>(        204, &MatScanSubheader::multiples),
    field<Int32>(        208, &MatScanSubheader::net_trues),
    field<VaxFloats<16>>(316, &MatScanSubheader::corrected_singles),
    field<VaxFloats<16>>(380, &MatScanSubheader::uncorrected_singles),
    field<VaxFloat>(     444, &MatScanSubheader::total_average_corrected),
    field<VaxFloat>(     448, &MatScanSubheader::total_average_uncorrected),
    field<Int32>(        452, &MatScanSubheader::total_coincidence_rate),
    field<Int32>(        456, &MatScanSubheader::frame_start_time),
    field<Int32>(        460, &MatScanSubheader::frame_duration),
    field<VaxFloat>(     464, &MatScanSubheader::loss_correction_factor)};
// clang-format on
static_assert(fields_fit(ScanSubheaderFields));

} // namespace velmorant
