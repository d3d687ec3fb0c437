#pragma once

#include "image/image_header.h"

#include <array>
#include <cstdint>

namespace velmorant
{

// The older layouts: the first seven integers of a header, and its pixel size (x and y alike) and
// slice thickness in mm; the five integers of a selector.
using OldHeaderIntegers = std::array<std::int32_t, 7>;
using OldHeaderSizes = std::array<float, 2>;
using OldImageMatrix = std::array<std::int32_t, 5>;

// From and to the older layouts. What an older header lacks gets the value that
// `create_standard_image_header` gives it. The older layout has one pixel size, x; where y differs
// (a NaN always does) "*** Warning: Inconsistent x-y pixel size ***" is printed.
void convert_header_old_to_new(const OldHeaderIntegers &old_ints, const OldHeaderSizes &old_sizes,
                               ImageHeader &header);
void convert_header_new_to_old(const ImageHeader &header, OldHeaderIntegers &old_ints,
                               OldHeaderSizes &old_sizes);
void convert_imagematrix_old_to_new(const OldImageMatrix &old_matrix, ImageMatrix &new_matrix);

} // namespace velmorant
