#pragma once

// Numbers in the byte order of a file, on any host.

#include <bit>
#include <concepts>
#include <cstdint>
#include <cstring>

namespace velmorant
{

static_assert(std::endian::native == std::endian::big ||
              std::endian::native == std::endian::little);

// The same word with its bytes in reverse order.
template <std::unsigned_integral Word>
constexpr Word swap_bytes(Word word)
{
    static_assert(sizeof(Word) == 2 || sizeof(Word) == 4);
    if constexpr (sizeof(Word) == 2) {
        return static_cast<Word>((word << 8) | (word >> 8));
    } else {
        return (word << 24) | ((word & 0xFF00U) << 8) | ((word >> 8) & 0xFF00U) | (word >> 24);
    }
}

// Reads the word that starts at `bytes`.
template <std::endian Order, std::unsigned_integral Word>
Word load_word(const std::uint8_t *bytes)
{
    Word word;
    std::memcpy(&word, bytes, sizeof(Word));
    return Order == std::endian::native ? word : swap_bytes(word);
}

// Writes the word from `bytes` on.
template <std::endian Order, std::unsigned_integral Word>
void store_word(std::uint8_t *bytes, Word word)
{
    const Word stored = Order == std::endian::native ? word : swap_bytes(word);
    std::memcpy(bytes, &stored, sizeof(Word));
}

} // namespace velmorant
