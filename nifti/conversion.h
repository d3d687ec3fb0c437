#pragma once

// The way of the values from a NIfTI image into a raw one.

#include "image/image_header.h"
#include "nifti/axis_order.h"
#include "nifti/nifti_image.h"
#include "nifti/raw_storage.h"

#include <cstddef>
#include <cstdio>
#include <functional>

namespace velmorant
{

// Told before each frame what is being done ("converting", say), and the frame, from 1.
using Progress = std::function<void(const char *doing, std::int32_t frame)>;

// Chooses the storage; where the type alone doesn't tell, after a look at all values.
RawStorage choose_storage(const NiftiImage &image, const Progress &progress);

// The header of the raw image: x, y and z are the stored axes in the order of the standard
// orientation, each running as it is stored, which the flags say. Little-endian.
ImageHeader describe_raw(const NiftiImage &image, const AxisOrder &order,
                         const RawStorage &storage);

// Writes all frames as `describe_raw` says, a few MiB at a time.
// file: empty, open to write and to read. Closing it reports a failed write.
// Returns how many of the values written are infinite or no numbers.
// Fatal: "can't write the raw image" where the file can't be sought or read again.
std::size_t write_frames(const NiftiImage &image, const AxisOrder &order, const RawStorage &storage,
                         std::FILE *file, const Progress &progress);

} // namespace velmorant
