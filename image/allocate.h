#pragma once

// Where every image buffer comes from: blocks of `count` elements, zero-filled unless said
// otherwise, owned by the caller and released with std::free (or by a `Block`). Each label names
// its buffer in the report that ends a run without memory: "can't allocate memory for ImgTarget
// (524KB)", in kilobytes of 1000 bytes, truncated. A negative count can't be had, either.

#include <cstdint>
#include <cstdlib>
#include <memory>

namespace velmorant
{

unsigned char *allocate_unsigned_char_zero(std::int32_t count, const char *label);
unsigned char *allocate_char_zero(std::int32_t count, const char *label);
std::int16_t *allocate_short_int_zero(std::int32_t count, const char *label);
std::int32_t *allocate_int_zero(std::int32_t count, const char *label);
float *allocate_float_zero(std::int32_t count, const char *label);
// Not zero-filled.
float *allocate_float(std::int32_t count, const char *label);

struct FreeBlock {
    void operator()(void *block) const
    {
        std::free(block);
    }
};

// Owns an allocated block for as long as a procedure needs it.
template <class Element>
using Block = std::unique_ptr<Element[], FreeBlock>;

} // namespace velmorant
