#pragma once

#include "image/image_header.h"

#include <array>
#include <bit>
#include <cstdint>
#include <string>
#include <vector>

namespace test
{

// The text header of a raw image of 3 x 2 x 3 big-endian floats in the standard orientation, with
// pixels of 2 x 2 x 4 mm. `changes` are more lines; a later line replaces an earlier one's value.
std::string text_header(const std::string &changes = "");

// The low `bytes` bytes of each value, most significant first where `big`.
std::string stored_integers(const std::vector<std::int64_t> &values, int bytes, bool big);
// Single-precision floats.
std::string stored_floats(const std::vector<float> &values, bool big);

// The seventeen fields of a header, to compare it whole.
inline auto fields(const velmorant::ImageHeader &header)
{
    return std::bit_cast<std::array<std::int32_t, 17>>(header);
}

} // namespace test
