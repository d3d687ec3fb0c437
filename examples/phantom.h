#pragma once

// A made-up PET study of a head, for trying out and for tests: the same numbers from every
// compiler.
//
// Subject: gray and white matter, ventricles, deep nuclei, cerebellum and brain stem under a skull
// and scalp, the neck below. A hot lesion lies frontal on the subject's right, a cold one parietal
// on the left, so that a picture shows at a glance which way round it is.

#include "image/image_header.h"

#include <cstdint>

namespace phantom
{

// The header of a study in the standard orientation with `beds` bed positions. The field of view is
// 217.6 mm wide and 144 mm long, whatever the dimensions; each bed position begins 126 mm below the
// one before it, the first at the vertex.
velmorant::ImageHeader describe(std::int32_t x_dim, std::int32_t y_dim, std::int32_t num_slices,
                                std::int32_t frames, std::int32_t beds);

// Fills `volume` (image_size(header) floats, standard orientation) with the activity in kBq/ml
// during one frame, counted from 1, at one bed position, counted from 0.
void fill_volume(float *volume, const velmorant::ImageHeader &header, std::int32_t frame,
                 std::int32_t bed);

} // namespace phantom
