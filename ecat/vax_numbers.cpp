#include "ecat/vax_numbers.h"

#include <bit>
#include <cmath>

namespace velmorant
{

// The exponent's seven high bits in the first word, and what one less or more of them is, modulo
// 128: two less or more of the exponent.
static constexpr std::uint32_t HighExponent = 0x7F00;
static constexpr std::uint32_t TwoLess = 0x7F00;
static constexpr std::uint32_t TwoMore = 0x0100;

static std::uint32_t add_to_exponent(std::uint32_t word, std::uint32_t addend)
{
    return (((word & HighExponent) + addend) & HighExponent) | (word & ~HighExponent);
}

float get_vax_float(const std::uint16_t *words, std::size_t index)
{
    const std::uint32_t first = words[index];
    const std::uint32_t second = words[index + 1];
    if (first == 0 && second == 0) {
        return 0.0F;
    }
    return std::bit_cast<float>((add_to_exponent(first, TwoLess) << 16U) | second);
}

std::int32_t get_vax_long(const std::uint16_t *words, std::size_t index)
{
    const std::uint32_t low = words[index];
    const std::uint32_t high = words[index + 1];
    return static_cast<std::int32_t>((high << 16U) | low);
}

void sunftovaxf(std::uint16_t *destination, float value)
{
    if (std::fabs(static_cast<double>(value)) <= 1e-20) {
        destination[0] = destination[1] = 0;
        return;
    }
    const auto bits = std::bit_cast<std::uint32_t>(value);
    destination[0] = static_cast<std::uint16_t>(add_to_exponent(bits >> 16U, TwoMore));
    destination[1] = static_cast<std::uint16_t>(bits);
}

void sunltovaxl(std::int32_t value, std::uint16_t *destination)
{
    const auto bits = static_cast<std::uint32_t>(value);
    destination[0] = static_cast<std::uint16_t>(bits);
    destination[1] = static_cast<std::uint16_t>(bits >> 16U);
}

template <class Element>
static void swap_pairs(const Element *source, Element *destination, std::int32_t count)
{
    for (std::int64_t i = 0; i < count; i += 2) {
        const Element first = source[i];
        destination[i] = source[i + 1];
        destination[i + 1] = first;
    }
}

void swabt(const std::uint8_t *source, std::uint8_t *destination, std::int32_t byte_count)
{
    swap_pairs(source, destination, byte_count);
}

void swaw(const std::uint16_t *source, std::uint16_t *destination, std::int32_t word_count)
{
    swap_pairs(source, destination, word_count);
}

} // namespace velmorant
