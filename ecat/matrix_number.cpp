#include "ecat/matrix_number.h"

#include <cstddef>

namespace velmorant
{

namespace
{

// Where a coordinate lies in a matrix number.
struct BitField {
    std::uint32_t lowest;
    std::uint32_t mask;
};

} // namespace

// Frame, plane, gate, data and bed.
static constexpr std::array<BitField, 5> BitFields{
    {{0, 0xFFF}, {16, 0xFF}, {24, 0x3F}, {30, 0x3}, {12, 0xF}}};

std::uint32_t mat_numcod(std::int32_t frame, std::int32_t plane, std::int32_t gate,
                         std::int32_t data, std::int32_t bed)
{
    const std::array coordinates{frame, plane, gate, data, bed};
    std::uint32_t number = 0;
    for (std::size_t i = 0; i < coordinates.size(); ++i) {
        const BitField &field = BitFields.at(i);
        number |= (static_cast<std::uint32_t>(coordinates.at(i)) & field.mask) << field.lowest;
    }
    return number;
}

void mat_numdoc(std::uint32_t matrix_number, std::array<std::int32_t, 5> &coordinates)
{
    for (std::size_t i = 0; i < coordinates.size(); ++i) {
        const BitField &field = BitFields.at(i);
        coordinates.at(i) = static_cast<std::int32_t>((matrix_number >> field.lowest) & field.mask);
    }
}

} // namespace velmorant
