#pragma once

#include <limits>

namespace velmorant
{

// What the writers make of pixels that are too low to count.
struct Cutoff {
    float threshold;
    float replacement;
};

// A threshold that no pixel is below.
inline constexpr float KeepAll = -std::numeric_limits<float>::infinity();

// The pixel to write: the replacement for one below the threshold. NaN is below nothing.
inline float apply_cutoff(const Cutoff &cutoff, float pixel)
{
    return pixel < cutoff.threshold ? cutoff.replacement : pixel;
}

} // namespace velmorant
