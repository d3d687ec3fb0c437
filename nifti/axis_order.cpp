#include "nifti/axis_order.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

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

// The volume of the parallelepiped of the axes as of length 1: 1 or -1 for right angles, 0 in a plane;
// negative where they are the mirror image of right, anterior and superior.
static double volume_of_directions(const Affine &a)
{
    const double determinant = a[0][0] * (a[1][1] * a[2][2] - a[1][2] * a[2][1]) -
                               a[0][1] * (a[1][0] * a[2][2] - a[1][2] * a[2][0]) +
                               a[0][2] * (a[1][0] * a[2][1] - a[1][1] * a[2][0]);
    return determinant /
           (length_of(column_of(a, 0)) * length_of(column_of(a, 1)) * length_of(column_of(a, 2)));
}

// The cosine of the angle between a stored axis and a line.
static double cosine_of(const Affine &affine, std::size_t line, std::size_t axis)
{
    const Column column = column_of(affine, axis);
    return column.at(line) / length_of(column);
}

// Which stored axis goes to each line, so that all together are as near as can be.
static std::array<std::size_t, 3> nearest_axes(const Affine &affine)
{
    std::array<std::size_t, 3> axes{0, 1, 2};
    std::array<std::size_t, 3> nearest = axes;
    double nearness = 0.0;
    do {
        double sum = 0.0;
        for (std::size_t line = 0; line < 3; ++line) {
            sum += std::fabs(cosine_of(affine, line, axes.at(line)));
        }
        if (sum > nearness) {
            nearness = sum;
            nearest = axes;
        }
    } while (std::ranges::next_permutation(axes).found);
    return nearest;
}

// Whether axes in this order, all towards right, anterior and superior, are the mirror image of those lines.
static bool is_mirrored(const std::array<std::size_t, 3> &source)
{
    return (source[0] + 1) % 3 != source[1];
}

std::optional<AxisOrder> find_axis_order(const Affine &affine)
{
    constexpr double flat = 1e-3;
    const double volume = volume_of_directions(affine);
    if (!(std::fabs(volume) > flat)) { // not a number, with an axis of no length
        return std::nullopt;
    }
    AxisOrder order{};
    order.source = nearest_axes(affine);
    bool mirrored = is_mirrored(order.source);
    for (std::size_t line = 0; line < 3; ++line) {
        const std::size_t axis = order.source.at(line);
        const double cosine = cosine_of(affine, line, axis);
        const bool reversed = cosine < 0.0;
        order.standard.at(line) = reversed;
        order.pixel_size.at(line) = length_of(column_of(affine, axis));
        order.tilt =
            std::max(order.tilt, std::acos(std::min(std::fabs(cosine), 1.0)) * DegreesInRadian);
        mirrored = mirrored != reversed;
    }
    // Axes that are sheared far can lie so that their nearest lines swap right and left.
    return mirrored == (volume < 0.0) ? std::optional(order) : std::nullopt;
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
