#pragma once

#include "image/allocate.h"

#include <cstddef>
#include <vector>

namespace velmorant
{

// Gathers the largest in-field pixels of a volume on one pass over it.
class LargestPixels
{
public:
    static constexpr std::size_t MostAtOnce = 1024; // pixels that `add` takes

    // count: how many to gather, at most 2^27; 0 gathers none.
    // check: a pixel strictly below is out of field.
    // Ends the run with "can't allocate memory for largest pixels".
    LargestPixels(std::size_t count, float check);

    // max: upper bound of the in-field pixels among them; most calls are over after a look at it.
    void add(const float *pixels, std::size_t count, float max);
    void add_zeros(std::size_t count);

    // The largest pixels in no order, or all that were added where those are fewer; without NaN and
    // negative infinities.
    std::vector<float> take();

private:
    [[nodiscard]] std::size_t most() const;
    void drop_smaller(std::size_t enough);

    std::size_t wanted;
    Block<float> gathered;
    std::size_t size = 0;
    float bound; // pixels that are not above it are out of field or not among the largest
};

} // namespace velmorant
