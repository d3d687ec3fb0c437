#pragma once

#include <cstdint>

namespace velmorant
{

// How the histogram normalisation looks at a volume.
struct NormSet {
    float peak_threshold;  // fraction of the in-field pixels that the histogram reaches at its peak
    float lower_threshold; // lower end of the averaging band, as a fraction of the peak value
    std::int32_t bin_count; // histogram bins
};

} // namespace velmorant
