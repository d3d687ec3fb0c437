#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace test
{

// What a NIfTI file is made from.
struct NiftiFile {
    int version = 1;
    bool big = false;  // byte order
    bool pair = false; // the header alone, of a pair
    std::vector<std::int64_t> size;
    int datatype = 16; // as the format numbers it: 4 = int16, 8 = int32, 16 = float32
    double slope = 0;
    double intercept = 0;
    int units = 2;                             // of lengths: 1 = m, 2 = mm, 3 = µm
    std::array<double, 4> spacing{1, 1, 1, 1}; // qfac, and then along each axis
    int qform_code = 0;
    std::array<double, 3> quaternion{}; // b, c, d
    int sform_code = 0;
    std::array<std::array<double, 3>, 3> sform{}; // rows: right, anterior, superior
    std::string data;
};

// The bytes of the whole file.
std::string nifti_bytes(const NiftiFile &file);

} // namespace test
