#pragma once

namespace velmorant
{

// What the writers make of pixels that are too low to count.
struct Cutoff {
    float threshold;
    float replacement;
};

// The pixel to write: the replacement for one below the threshold. NaN is below nothing.
inline float apply_cutoff(const Cutoff &cutoff, float pixel)
{
    return pixel < cutoff.threshold ? cutoff.replacement : pixel;
}

} // namespace velmorant
