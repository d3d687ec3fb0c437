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

static constexpr BitField Frame{0, 0xFFF};
static constexpr BitField Plane{16, 0xFF};
static constexpr BitField Gate{24, 0x3F};
static constexpr BitField Data{30, 0x3};
static constexpr BitField Bed{12, 0xF};
static constexpr std::array BitFields{Frame, Plane, Gate, Data, Bed};

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

// Beyond one round and the step into the next all that is new is where it ends.
static std::int32_t shorten_run(const BitField &field, std::int32_t count)
{
    const auto round = static_cast<std::int32_t>(field.mask) + 1;
    return count <= round ? count : round + 1 + (count - 1) % round;
}

ImageMatrix shorten_runs(const ImageMatrix &counts)
{
    return {.frame = shorten_run(Frame, counts.frame),
            .plane = shorten_run(Plane, counts.plane),
            .gate = shorten_run(Gate, counts.gate),
            .data = shorten_run(Data, counts.data),
            .bed = shorten_run(Bed, counts.bed)};
}

// Whether no two of so many consecutive coordinates wrap around to the same one.
static bool holds(const BitField &field, std::int64_t count)
{
    return count <= std::int64_t{field.mask} + 1;
}

bool are_distinct(std::int32_t frames, std::int32_t planes, std::int32_t last_bed)
{
    return holds(Frame, frames) && holds(Plane, planes) && holds(Bed, std::int64_t{last_bed} + 1);
}

} // namespace velmorant
