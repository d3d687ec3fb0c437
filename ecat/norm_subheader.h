#pragma once

// Normalisation subheader: the first block of each normalisation plane. After it come VAX floats.

#include "ecat/header_fields.h"

#include <array>
#include <cstdint>
#include <tuple>

namespace velmorant
{

struct MatNormSubheader {
    std::int16_t data_type;
    std::int16_t x_dimension;
    std::int16_t y_dimension;
    float scale_factor;
    std::int16_t norm_hour;
    std::int16_t norm_minute;
    std::int16_t norm_second;
    std::int16_t norm_day;
    std::int16_t norm_month;
    std::int16_t norm_year;
    float fov_source_width;
};

// clang-format off
inline constexpr std::tuple NormSubheaderFields{
    // TYPE         BYTE  MEMBER
    field<Int16>(   126, &MatNormSubheader::data_type),
    field<Int16>(   132, &MatNormSubheader::x_dimension),
    field<Int16>(   134, &MatNormSubheader::y_dimension),
    field<VaxFloat>(182, &MatNormSubheader::scale_factor),
    field<Int16>(   186, &MatNormSubheader::norm_hour),
    field<Int16>(   188, &MatNormSubheader::norm_minute),
    field<Int16>(   190, &MatNormSubheader::norm_second),
    field<Int16>(   192, &MatNormSubheader::norm_day),
    field<Int16>(   194, &MatNormSubheader::norm_month),
    field<Int16>(   196, &MatNormSubheader::norm_year),
    field<VaxFloat>(198, &MatNormSubheader::fov_source_width)};
// clang-format on
static_assert(fields_fit(NormSubheaderFields));

} // namespace velmorant
