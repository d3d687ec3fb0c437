#pragma once

// Stored pixels become real values.

#include "image/byte_order.h"

#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>
#include <type_traits>

namespace velmorant
{

// The pixel that a stored word stands for. Stored: std::int16_t, std::uint16_t or float.
template <class Stored, class Word>
float pixel_value(Word word, float factor)
{
    if constexpr (std::is_same_v<Stored, float>) {
        return std::bit_cast<float>(word);
    } else {
        return static_cast<float>(static_cast<Stored>(word)) * factor;
    }
}

// Fills `pixels` from as many elements at `bytes`: an integer n stands for n * factor, computed in
// single precision, a float for itself.
template <std::endian Order, class Stored>
void decode_pixels(const std::uint8_t *bytes, std::span<float> pixels, float factor)
{
    using Word = std::conditional_t<sizeof(Stored) == 2, std::uint16_t, std::uint32_t>;
    for (std::size_t i = 0; i < pixels.size(); ++i) {
        const Word word = load_word<Order, Word>(bytes + i * sizeof(Word));
        pixels[i] = pixel_value<Stored>(word, factor);
    }
}

} // namespace velmorant
