#pragma once

// How real values become signed 16-bit integers in a raw file.

#include <cstddef>
#include <cstdint>

namespace velmorant
{

// step: real value of one stored unit. stated: real value of the stored 32700, as a header says it.
struct ShortScaling {
    float step;
    float stated;
};

// The extreme by which 16-bit data are scaled: the maximum of all slice_pixels * slices values, or
// the magnitude of the smallest value above `threshold` where its square is the larger one (single
// precision). The sign of a winning maximum is kept. An empty volume gives -1e30; a maximum of 0
// with nothing above the threshold gives 1e30.
float find_pix_max(const float *buffer, std::size_t slice_pixels, std::size_t slices,
                   float threshold);

// The scaling for a volume whose extreme is `extreme`. quantisation: 0, or a magnitude of up to 1e-20,
// scales the extreme to 32700; any other value is the number of stored units in 1.0.
ShortScaling choose_short_scaling(float extreme, float quantisation);

// What a 16-bit writer makes of one value. quantised: value / step, and half a unit more in the
// direction of the value's sign, truncated. overflow: 0 is stored instead.
struct StoredShort {
    std::int32_t quantised;
    bool overflow;
};

// Overflow is tested on the low 16 bits of quantised + 32700, which must not exceed 65400: 32701 to
// 32835 are caught, on either side of zero and again every 65536, and what lies between those bands
// wraps round to other 16-bit values. What does not fit 32 bits is caught as well, having no low
// bits to keep. A step of 0 stores 0.
StoredShort quantise(float value, float step);

} // namespace velmorant
