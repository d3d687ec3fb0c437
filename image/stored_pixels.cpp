#include "image/stored_pixels.h"

#include "image/byte_order.h"
#include "image/wide_vectors.h"

#include <type_traits>

namespace velmorant
{

// The pixel that a stored word stands for. Stored: std::int16_t, std::uint16_t or float.
template <class Stored, class Word>
static float pixel_value(Word word, float factor)
{
    if constexpr (std::is_same_v<Stored, float>) {
        return std::bit_cast<float>(word);
    } else {
        return static_cast<float>(static_cast<Stored>(word)) * factor;
    }
}

template <std::endian Order, class Stored>
[[gnu::always_inline]] static inline void decode(const std::uint8_t *bytes, float *pixels,
                                                 std::size_t count, float factor)
{
    using Word = std::conditional_t<sizeof(Stored) == 2, std::uint16_t, std::uint32_t>;
    for (std::size_t i = 0; i < count; ++i) {
        const Word word = load_word<Order, Word>(bytes + i * sizeof(Word));
        pixels[i] = pixel_value<Stored>(word, factor);
    }
}

template <std::endian Order>
[[gnu::always_inline]] static inline void decode(StoredType type, const std::uint8_t *bytes,
                                                 float *pixels, std::size_t count, float factor)
{
    switch (type) {
    case StoredType::SignedShort:
        return decode<Order, std::int16_t>(bytes, pixels, count, factor);
    case StoredType::UnsignedShort:
        return decode<Order, std::uint16_t>(bytes, pixels, count, factor);
    case StoredType::Float:
        return decode<Order, float>(bytes, pixels, count, factor);
    }
}

VELMORANT_WIDE_VECTORS
void decode_pixels(StoredType type, std::endian byte_order, const std::uint8_t *bytes,
                   float *pixels, std::size_t count, float factor)
{
    if (byte_order == std::endian::big) {
        decode<std::endian::big>(type, bytes, pixels, count, factor);
    } else {
        decode<std::endian::little>(type, bytes, pixels, count, factor);
    }
}

} // namespace velmorant
