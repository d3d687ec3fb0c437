#pragma once

#include "image/image_header.h"

#include <cstdint>

namespace velmorant
{

// Ends the run with "internal flag error" where none of the three flags is 0 or 1.
void check_flags(std::int32_t right_on_left, std::int32_t anterior_to_posterior,
                 std::int32_t superior_to_inferior);

// Turns one volume in place from its file's orientation to the standard one, or back: each flag
// that is 0 reverses its axis (x, y, z in this order), any other value leaves the axis as it is.
// Each reversal is its own inverse. Ends the run as `check_flags` and `checked_image_size` do.
void flip_image(float *buffer, const ImageHeader &header, std::int32_t right_on_left,
                std::int32_t anterior_to_posterior, std::int32_t superior_to_inferior);

// The same for each of the num_frames * (num_beds + 1) volumes that follow one another in `buffer`.
void flip_image_multiframe(float *buffer, const ImageHeader &header, std::int32_t right_on_left,
                           std::int32_t anterior_to_posterior, std::int32_t superior_to_inferior);

} // namespace velmorant
