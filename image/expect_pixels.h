#pragma once

#include <algorithm>
#include <cstddef>

namespace velmorant
{

// Has pixels fetched into the cache while others are worked on, because the processor wouldn't foresee
// that they are next: it follows a run of addresses to the end of its page only. Changes nothing else.
// pixels: `count` of them, from the `start`th on of which `length` are expected, as far as there are
// so many.
[[gnu::always_inline]] inline void expect_pixels(const float *pixels, std::size_t count,
                                                 std::size_t start, std::size_t length)
{
    constexpr std::size_t cache_line = 64 / sizeof(float);
    const std::size_t first = std::min(start, count);
    const std::size_t end = first + std::min(length, count - first);
    for (std::size_t i = first; i < end; i += cache_line) {
        __builtin_prefetch(pixels + i);
    }
}

} // namespace velmorant
