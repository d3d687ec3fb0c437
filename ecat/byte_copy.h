#pragma once

#include <cstdint>

namespace velmorant
{

// Copies bytes by way of a buffer of its own, so that source and destination may overlap. A count
// of 0 or less does nothing. Without memory for the buffer, prints "can't allocate internal buffer
// for btcopy()..." and ends the process with status -1.
void btcopy(const std::uint8_t *source, std::uint8_t *destination, std::int32_t byte_count);

} // namespace velmorant
