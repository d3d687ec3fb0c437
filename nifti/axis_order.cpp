#include "nifti/axis_order.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include <nifti2_io.h>

namespace velmorant
{

// By line, and whether against the standard orientation.
static constexpr std::array<std::array<char, 2>, 3> Letters{{{'L', 'R'}, {'P', 'A'}, {'I', 'S'}}};

static constexpr double DegreesInRadian = 57.29577951308232;

using Column = std::array<double, 3>;

static Column column_of(const Affine &affine, std::size_t axis)
{
    return {affine[0].at(axis), affine[1].at(axis), affine[2].at(axis)};
}

static double length_of(const Column &column)
{
    return std::hypot(column[0], column[1], column[2]);
}

// The volume of the parallelepiped of the axes as of length 1: 1 for right angles, 0 in a plane.
static double volume_of_directions(const Affine &a)
{
    const double determinant = a[0][0] * (a[1][1] * a[2][2] - a[1][2] * a[2][1]) -
                               a[0][1] * (a[1][0] * a[2][2] - a[1][2] * a[2][0]) +
                               a[0][2] * (a[1][0] * a[2][1] - a[1][1] * a[2][0]);
    return std::fabs(determinant) /
           (length_of(column_of(a, 0)) * length_of(column_of(a, 1)) * length_of(column_of(a, 2)));
}

// The library's code of each stored axis: 1 + 2 * line, and 1 more where it runs as in the standard
// orientation.
static std::array<int, 3> nearest_axes(const Affine &affine)
{
    nifti_dmat44 matrix{};
    for (std::size_t row = 0; row < 3; ++row) {
        std::ranges::copy(affine.at(row), matrix.m[row]);
    }
    matrix.m[3][3] = 1.0;
    std::array<int, 3> codes{};
    nifti_dmat44_to_orientation(matrix, codes.data(), &codes[1], &codes[2]);
    return codes;
}

static_assert(NIFTI_L2R == 1 && NIFTI_R2L == 2 && NIFTI_P2A == 3 && NIFTI_A2P == 4 &&
              NIFTI_I2S == 5 && NIFTI_S2I == 6);

std::optional<AxisOrder> find_axis_order(const Affine &affine)
{
    constexpr double flat = 1e-3;
    if (!(volume_of_directions(affine) > flat)) { // not a number, with an axis of no length
        return std::nullopt;
    }
    const std::array<int, 3> codes = nearest_axes(affine);
    AxisOrder order{};
    std::array<bool, 3> taken{};
    for (std::size_t axis = 0; axis < 3; ++axis) {
        if (codes.at(axis) < NIFTI_L2R || codes.at(axis) > NIFTI_S2I) {
            return std::nullopt;
        }
        const auto line = static_cast<std::size_t>(codes.at(axis) - 1) / 2;
        const Column column = column_of(affine, axis);
        const double length = length_of(column);
        const double cosine = std::min(std::fabs(column.at(line)) / length, 1.0);
        order.source.at(line) = axis;
        order.standard.at(line) = codes.at(axis) % 2 == 0;
        order.pixel_size.at(line) = length;
        order.tilt = std::max(order.tilt, std::acos(cosine) * DegreesInRadian);
        taken.at(line) = true;
    }
    return std::ranges::count(taken, true) == 3 ? std::optional(order) : std::nullopt;
}

std::string axis_letters(const AxisOrder &order)
{
    std::string letters(3, ' ');
    for (std::size_t line = 0; line < 3; ++line) {
        letters.at(order.source.at(line)) = Letters.at(line).at(order.standard.at(line) ? 0 : 1);
    }
    return letters;
}

std::optional<Affine> affine_from_letters(std::string_view letters,
                                          const std::array<double, 3> &spacing)
{
    Affine affine{};
    std::array<bool, 3> taken{};
    if (letters.size() != 3) {
        return std::nullopt;
    }
    for (std::size_t axis = 0; axis < 3; ++axis) {
        const auto *line = std::ranges::find_if(Letters, [&](const auto &pair) {
            return std::ranges::find(pair, letters.at(axis)) != pair.end();
        });
        if (line == Letters.end()) {
            return std::nullopt;
        }
        const auto row = static_cast<std::size_t>(line - Letters.begin());
        const bool standard = letters.at(axis) == line->at(0);
        affine.at(row).at(axis) = standard ? -spacing.at(axis) : spacing.at(axis);
        taken.at(row) = true;
    }
    return std::ranges::count(taken, true) == 3 ? std::optional(affine) : std::nullopt;
}

} // namespace velmorant
