#pragma once

#include <cstddef>
#include <cstdint>

namespace velmorant
{

// What the elements of raw data are, by their number in a header's data_format.
enum class StoredType : std::int32_t { SignedShort = 1, UnsignedShort = 2, Float = 3 };

constexpr std::size_t stored_bytes(StoredType type)
{
    return type == StoredType::Float ? 4 : 2;
}

} // namespace velmorant
