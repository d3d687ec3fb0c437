#pragma once

#include "image/image_header.h"

namespace phantom
{

// Writes all frames, one after another, at one bed position as a NIfTI-1 image: signed 16-bit integers in
// steps of 0.002 kBq/ml, its axes towards right, anterior and superior. image: ends in .nii or .nii.gz.
// study: in the standard orientation; turned round in place.
// Ends the run with "can't write " and the image's name.
void write_nifti(const char *image, float *study, const velmorant::ImageHeader &header);

} // namespace phantom
