#pragma once

// How the stored axes of an image lie in the subject.

#include "nifti/nifti_image.h"

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace velmorant
{

struct AxisOrder {
    // Which stored axis (0 to 2) becomes x, y and z: the one nearest to the line between right and left,
    // front and back, head and feet.
    std::array<std::size_t, 3> source;
    // Whether it runs as in the standard orientation: from right to left, from anterior to posterior,
    // from superior to inferior.
    std::array<bool, 3> standard;
    std::array<double, 3> pixel_size; // mm along x, y and z
    double tilt;                      // degrees of the stored axis that is farthest from its line
};

// The nearest axes of an affine, each line taken by one of them: those whose angles to their lines have the
// largest sum of cosines. None where the affine's axes don't span a space, or are sheared so far that this
// would swap right and left.
std::optional<AxisOrder> find_axis_order(const Affine &affine);

// Where the stored axes lead, as in "RAS": towards right, anterior, superior.
std::string axis_letters(const AxisOrder &order);

// The affine whose axes lead where the letters say; none where they are not one of each pair R L, A P
// and S I. spacing: mm a step along each stored axis.
std::optional<Affine> affine_from_letters(std::string_view letters,
                                          const std::array<double, 3> &spacing);

} // namespace velmorant
