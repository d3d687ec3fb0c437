#include "image/largest_pixels.h"

#include "image/wide_vectors.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <functional>
#include <limits>

namespace velmorant
{

static constexpr float Infinity = std::numeric_limits<float>::infinity();

// Copies the pixels above a bound, of which most blocks hold none. Returns their number.
VELMORANT_WIDE_VECTORS
static std::size_t copy_above(float bound, const float *pixels, std::size_t count, float *copies)
{
    constexpr std::size_t block = 64;
    std::size_t copied = 0;
    for (std::size_t start = 0; start < count; start += block) {
        const std::size_t end = std::min(start + block, count);
        std::uint32_t above = 0;
        for (std::size_t i = start; i < end; ++i) {
            above |= static_cast<std::uint32_t>(pixels[i] > bound);
        }
        for (std::size_t i = start; above != 0 && i < end; ++i) {
            copies[copied] = pixels[i];
            copied += static_cast<std::size_t>(pixels[i] > bound);
        }
    }
    return copied;
}

// The largest number that is out of field.
static float below(float check)
{
    return check > -Infinity ? std::nextafter(check, -Infinity) : -Infinity;
}

LargestPixels::LargestPixels(std::size_t count, float check)
    : wanted(count),
      gathered(allocate_float(static_cast<std::int32_t>(most() + MostAtOnce), "largest pixels")),
      bound(count == 0 ? Infinity : below(check))
{
}

// How many are gathered before the smaller ones are dropped, which takes a look at all of them.
std::size_t LargestPixels::most() const
{
    return 4 * wanted;
}

void LargestPixels::add(const float *pixels, std::size_t count, float max)
{
    if (max > bound) {
        size += copy_above(bound, pixels, count, gathered.get() + size);
        if (size > most()) {
            drop_smaller();
        }
    }
}

void LargestPixels::add_zeros(std::size_t count)
{
    static constexpr float zeros[MostAtOnce]{};
    while (count > 0 && bound < 0.0F) {
        const std::size_t stretch = std::min(count, MostAtOnce);
        add(zeros, stretch, 0.0F);
        count -= stretch;
    }
}

// What is dropped is not larger than the bound, and all that follow are: no rank is lost before the
// last one that is kept.
void LargestPixels::drop_smaller()
{
    bound = pixel_of_rank(wanted - 1);
    size = wanted;
}

float LargestPixels::pixel_of_rank(std::size_t rank)
{
    float *sought = gathered.get() + rank;
    std::nth_element(gathered.get(), sought, gathered.get() + size, std::greater{});
    return *sought;
}

} // namespace velmorant
