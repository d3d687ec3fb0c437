#pragma once

#include "image/allocate.h"

#include <cstddef>

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

    // Whether these are all in-field pixels above -infinity: there are fewer than were to be gathered.
    [[nodiscard]] bool has_all() const
    {
        return size < wanted;
    }

    // How many there are: the wanted ones at least, or all.
    [[nodiscard]] std::size_t count() const
    {
        return size;
    }

    // The pixel of a rank, from 0 for the largest to count - 1. Reorders the pixels.
    float pixel_of_rank(std::size_t rank);

private:
    [[nodiscard]] std::size_t most() const;
    void drop_smaller();

    std::size_t wanted;
    Block<float> gathered;
    std::size_t size = 0;
    float bound; // pixels that are not above it are out of field or not among the largest
};

} // namespace velmorant
