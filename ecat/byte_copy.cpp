#include "ecat/byte_copy.h"

#include "ecat/internal_buffer.h"

#include <algorithm>

namespace velmorant
{

void btcopy(const std::uint8_t *source, std::uint8_t *destination, std::int32_t byte_count)
{
    if (byte_count <= 0) {
        return;
    }
    const Block<std::uint8_t> buffer = allocate_internal_buffer<std::uint8_t>(
        static_cast<std::size_t>(byte_count), "can't allocate internal buffer for btcopy()...");
    std::copy_n(source, byte_count, buffer.get());
    std::copy_n(buffer.get(), byte_count, destination);
}

} // namespace velmorant
