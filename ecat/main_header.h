#pragma once

// Main header: block 1 of an ECAT 6 matrix file, which describes the whole study. Lengths are in cm.
// The codes of scanner, modes and units are carried, never interpreted. Bytes that no field covers
// are not read.

#include "ecat/header_fields.h"

#include <array>
#include <cstdint>
#include <tuple>

namespace velmorant
{

struct MatMainHeader {
    std::array<char, 20> source_file_name; // name of the file as first written
    std::int16_t software_version;         // version of format and software
    std::int16_t data_type;                // code of the matrices' data type
    std::int16_t system_type;              // scanner model
    std::int16_t file_type;        // kind of file: images, sinograms, attenuation, normalisation
    std::array<char, 10> node_id;  // acquisition computer
    std::int16_t scan_start_day;   // of the month
    std::int16_t scan_start_month; // 1 to 12
    std::int16_t scan_start_year;  // in full
    std::int16_t scan_start_hour;
    std::int16_t scan_start_minute;
    std::int16_t scan_start_second;
    std::array<char, 8> isotope_code; // name of the isotope
    float isotope_halflife;
    std::array<char, 32> radiopharmaceutical; // name of the tracer
    float gantry_tilt;
    float gantry_rotation;
    float bed_elevation;
    std::int16_t rotating_source_speed;
    std::int16_t wobble_speed;
    std::int16_t transmission_source_type;
    float axial_fov;      // field of view along the axis
    float transaxial_fov; // field of view across it
    std::int16_t transaxial_sampling_mode;
    std::int16_t coincidence_sampling_mode;
    std::int16_t axial_sampling_mode;
    float calibration_factor;
    std::int16_t calibration_units;
    std::int16_t compression_code;
    std::array<char, 12> study_name;
    std::array<char, 16> patient_id;
    std::array<char, 32> patient_name;
    char patient_sex;                 // a letter
    std::array<char, 10> patient_age; // these three as text
    std::array<char, 10> patient_height;
    std::array<char, 10> patient_weight;
    char patient_dexterity; // a letter
    std::array<char, 32> physician_name;
    std::array<char, 32> operator_name;
    std::array<char, 32> study_description;
    std::int16_t acquisition_type;
    std::int16_t bed_type;
    std::int16_t septa_type;
    std::array<char, 20> facility_name;
    std::int16_t num_planes;        // planes (slices) of one volume
    std::int16_t num_frames;        // time frames
    std::int16_t num_gates;         // 0 where the study is not gated
    std::int16_t num_bed_positions; // beyond the first: beds are numbered 0 to this
    float initial_bed_position;
    std::array<float, 15> bed_offsets; // of bed positions 1 to 15
    float plane_separation;            // cm between the centres of planes
    std::int16_t lower_scatter_threshold;
    std::int16_t lower_true_threshold;
    std::int16_t upper_true_threshold;
    float collimator;
    std::array<char, 10> user_process_code;
};

// clang-format off
inline constexpr std::tuple MainHeaderFields{
    // TYPE              BYTE  MEMBER
    field<Chars<20>>(     28, &MatMainHeader::source_file_name),
    field<Int16>(         48, &MatMainHeader::software_version),
    field<Int16>(         50, &MatMainHeader::data_type),
    field<Int16>(         52, &MatMainHeader::system_type),
    field<Int16>(         54, &MatMainHeader::file_type),
    field<Chars<10>>(     56, &MatMainHeader::node_id),
    field<Int16>(         66, &MatMainHeader::scan_start_day),
    field<Int16>(         68, &MatMainHeader::scan_start_month),
    field<Int16>(         70, &MatMainHeader::scan_start_year),
    field<Int16>(         72, &MatMainHeader::scan_start_hour),
    field<Int16>(         74, &MatMainHeader::scan_start_minute),
    field<Int16>(         76, &MatMainHeader::scan_start_second),
    field<Chars<8>>(      78, &MatMainHeader::isotope_code),
    field<VaxFloat>(      86, &MatMainHeader::isotope_halflife),
    field<Chars<32>>(     90, &MatMainHeader::radiopharmaceutical),
    field<VaxFloat>(     122, &MatMainHeader::gantry_tilt),
    field<VaxFloat>(     126, &MatMainHeader::gantry_rotation),
    field<VaxFloat>(     130, &MatMainHeader::bed_elevation),
    field<Int16>(        134, &MatMainHeader::rotating_source_speed),
    field<Int16>(        136, &MatMainHeader::wobble_speed),
    field<Int16>(        138, &MatMainHeader::transmission_source_type),
    field<VaxFloat>(     140, &MatMainHeader::axial_fov),
    field<VaxFloat>(     144, &MatMainHeader::transaxial_fov),
    field<Int16>(        148, &MatMainHeader::transaxial_sampling_mode),
    field<Int16>(        150, &MatMainHeader::coincidence_sampling_mode),
    field<Int16>(        152, &MatMainHeader::axial_sampling_mode),
    field<VaxFloat>(     154, &MatMainHeader::calibration_factor),
    field<Int16>(        158, &MatMainHeader::calibration_units),
    field<Int16>(        160, &MatMainHeader::compression_code),
    field<Chars<12>>(    162, &MatMainHeader::study_name),
    field<Chars<16>>(    174, &MatMainHeader::patient_id),
    field<Chars<32>>(    190, &MatMainHeader::patient_name),
    field<Char>(         222, &MatMainHeader::patient_sex),
    field<Chars<10>>(    223, &MatMainHeader::patient_age),
    field<Chars<10>>(    233, &MatMainHeader::patient_height),
    field<Chars<10>>(    243, &MatMainHeader::patient_weight),
    field<Char>(         253, &MatMainHeader::patient_dexterity),
    field<Chars<32>>(    254, &MatMainHeader::physician_name),
    field<Chars<32>>(    286, &MatMainHeader::operator_name),
    field<Chars<32>>(    318, &MatMainHeader::study_description),
    field<Int16>(        350, &MatMainHeader::acquisition_type),
    field<Int16>(        352, &MatMainHeader::bed_type),
    field<Int16>(        354, &MatMainHeader::septa_type),
    field<Chars<20>>(    356, &MatMainHeader::facility_name),
    field<Int16>(        376, &MatMainHeader::num_planes),
    field<Int16>(        378, &MatMainHeader::num_frames),
    field<Int16>(        380, &MatMainHeader::num_gates),
    field<Int16>(        382, &MatMainHeader::num_bed_positions),
    field<VaxFloat>(     384, &MatMainHeader::initial_bed_position),
    field<VaxFloats<15>>(388, &MatMainHeader::bed_offsets),
    field<VaxFloat>(     448, &MatMainHeader::plane_separation),
    field<Int16>(        452, &MatMainHeader::lower_scatter_threshold),
    field<Int16>(        454, &MatMainHeader::lower_true_threshold),
    field<Int16>(        456, &MatMainHeader::upper_true_threshold),
    field<VaxFloat>(     458, &MatMainHeader::collimator),
    field<Chars<10>>(    462, &MatMainHeader::user_process_code)};
// clang-format on
static_assert(fields_fit(MainHeaderFields));

} // namespace velmorant
