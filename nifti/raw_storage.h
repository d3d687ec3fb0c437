#pragma once

// How the values of a NIfTI image are stored in a raw one: as 16-bit integers where that changes no
// value, else as floats.

#include "image/stored_pixels.h"
#include "nifti/nifti_image.h"

#include <cstdint>
#include <limits>
#include <optional>
#include <span>

namespace velmorant
{

// The smallest and the largest of some integers; of none, the smallest is above the largest.
struct IntegerRange {
    std::int64_t smallest = std::numeric_limits<std::int64_t>::max();
    std::int64_t largest = std::numeric_limits<std::int64_t>::min();
};

// What to store for a NIfTI integer n: n + shift as a 16-bit integer, modulo 2^16, under the
// scaling that the raw header states; or the value itself as a float.
struct RawStorage {
    StoredType type;
    std::int64_t shift;
    float pixel_scaling;
};

RawStorage float_storage();

// The 16-bit storage for an image of integers, which are in `range`: where each of them, read from
// the raw image with the six decimals that its header gives the scaling, is n * slope + intercept,
// computed in double precision and rounded once. The intercept has to be a whole number of slopes.
// None where no storage is that exact.
std::optional<RawStorage> short_storage(const NiftiImage &image, const IntegerRange &range);

// What the type itself allows: for integers of up to 32 bits all its values; none for others.
std::optional<IntegerRange> range_of_type(NiftiType type);

// Whether a range is worth looking for: integers of which some can be stored exactly.
bool some_fit_shorts(const NiftiImage &image);

// The range with more stored values.
IntegerRange widen(IntegerRange range, NiftiType type, std::span<const std::uint8_t> values);

// Converts stored values. `raw` has room for as many floats or 16-bit integers, in the host's byte
// order.
void to_floats(const NiftiImage &image, std::span<const std::uint8_t> values, std::span<float> raw);
void to_shorts(const NiftiImage &image, std::int64_t shift, std::span<const std::uint8_t> values,
               std::span<std::uint16_t> raw);

} // namespace velmorant
