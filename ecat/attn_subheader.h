#pragma once

// Attenuation subheader: the first block of each attenuation plane. After it come VAX floats.

#include "ecat/header_fields.h"

#include <array>
#include <cstdint>
#include <tuple>

namespace velmorant
{

struct MatAttnSubheader {
    std::int16_t data_type;
    std::int16_t attenuation_type;
    std::int16_t x_dimension;
    std::int16_t y_dimension;
    float scale_factor;
    float x_origin;
    float y_origin;
    float x_radius;
    float y_radius;
    float tilt_angle;
    float attenuation_coefficient;
    float sample_distance;
};

// clang-format off
inline constexpr std::tuple AttnSubheaderFields{
    // TYPE         BYTE  MEMBER
    field<Int16>(   126, &MatAttnSubheader::data_type),
    field<Int16>(   128, &MatAttnSubheader::attenuation_type),
    field<Int16>(   132, &MatAttnSubheader::x_dimension),
    field<Int16>(   134, &MatAttnSubheader::y_dimension),
    field<VaxFloat>(182, &MatAttnSubheader::scale_factor),
    field<VaxFloat>(186, &MatAttnSubheader::x_origin),
    field<VaxFloat>(190, &MatAttnSubheader::y_origin),
    field<VaxFloat>(194, &MatAttnSubheader::x_radius),
    field<VaxFloat>(198, &MatAttnSubheader::y_radius),
    field<VaxFloat>(202, &MatAttnSubheader::tilt_angle),
    field<VaxFloat>(206, &MatAttnSubheader::attenuation_coefficient),
    field<VaxFloat>(210, &MatAttnSubheader::sample_distance)};
// clang-format on
static_assert(fields_fit(AttnSubheaderFields));

} // namespace velmorant
