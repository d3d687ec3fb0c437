#pragma once

// What a header block looks like in a file, as a table: one row a field, with its type, its byte in
// the block and its member in the record that is the block's meaning in memory.

#include "ecat/blocks.h"
#include "ecat/byte_copy.h"
#include "ecat/vax_numbers.h"
#include "image/byte_order.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <tuple>

namespace velmorant
{

// The types of fields. Each has the number of its bytes in the file, its `Value` in a record,
// `load`, which makes the value of the bytes, and `store`, which makes the bytes of the value.

struct Char {
    using Value = char;
    static constexpr std::size_t Bytes = 1;

    static Value load(const std::uint8_t *bytes)
    {
        return static_cast<char>(*bytes);
    }

    static void store(std::uint8_t *bytes, Value value)
    {
        *bytes = static_cast<std::uint8_t>(value);
    }
};

// Text that ends at its first zero byte; a field without one is text to its end, in the record as
// well. What follows a zero byte is zero in a record that was read. A record is written byte for
// byte, whatever follows.
template <std::size_t Width>
struct Chars {
    using Value = std::array<char, Width>;
    static constexpr std::size_t Bytes = Width;

    static Value load(const std::uint8_t *bytes)
    {
        Value text{};
        std::copy(bytes, std::find(bytes, bytes + Width, 0), text.begin());
        return text;
    }

    static void store(std::uint8_t *bytes, const Value &text)
    {
        btcopy(reinterpret_cast<const std::uint8_t *>(text.data()), bytes, Width);
    }
};

struct Int16 {
    using Value = std::int16_t;
    static constexpr std::size_t Bytes = 2;

    static Value load(const std::uint8_t *bytes)
    {
        return static_cast<Value>(load_word<std::endian::little, std::uint16_t>(bytes));
    }

    static void store(std::uint8_t *bytes, Value value)
    {
        store_word<std::endian::little>(bytes, static_cast<std::uint16_t>(value));
    }
};

// The two words of a 32-bit field, which may start at any word of its block.
using TwoWords = std::array<std::uint16_t, 2>;

inline TwoWords load_two_words(const std::uint8_t *bytes)
{
    return {load_word<std::endian::little, std::uint16_t>(bytes),
            load_word<std::endian::little, std::uint16_t>(bytes + 2)};
}

inline void store_two_words(std::uint8_t *bytes, const TwoWords &words)
{
    store_word<std::endian::little>(bytes, words[0]);
    store_word<std::endian::little>(bytes + 2, words[1]);
}

struct Int32 {
    using Value = std::int32_t;
    static constexpr std::size_t Bytes = 4;

    static Value load(const std::uint8_t *bytes)
    {
        return get_vax_long(load_two_words(bytes).data(), 0);
    }

    static void store(std::uint8_t *bytes, Value value)
    {
        TwoWords words{};
        sunltovaxl(value, words.data());
        store_two_words(bytes, words);
    }
};

struct VaxFloat {
    using Value = float;
    static constexpr std::size_t Bytes = 4;

    static Value load(const std::uint8_t *bytes)
    {
        return get_vax_float(load_two_words(bytes).data(), 0);
    }

    static void store(std::uint8_t *bytes, Value value)
    {
        TwoWords words{};
        sunftovaxf(words.data(), value);
        store_two_words(bytes, words);
    }
};

template <std::size_t Count>
struct VaxFloats {
    using Value = std::array<float, Count>;
    static constexpr std::size_t Bytes = Count * VaxFloat::Bytes;

    static Value load(const std::uint8_t *bytes)
    {
        Value values{};
        for (float &value : values) {
            value = VaxFloat::load(bytes);
            bytes += VaxFloat::Bytes;
        }
        return values;
    }

    static void store(std::uint8_t *bytes, const Value &values)
    {
        for (const float value : values) {
            VaxFloat::store(bytes, value);
            bytes += VaxFloat::Bytes;
        }
    }
};

// A row of a table.
template <class Type, class Record>
struct HeaderField {
    std::size_t byte;
    typename Type::Value Record::*member;
};

template <class Type, class Record>
constexpr HeaderField<Type, Record> field(std::size_t byte, typename Type::Value Record::*member)
{
    return {byte, member};
}

// Whether the fields are in ascending order, without overlap and inside the block.
template <class Record, class... Types>
constexpr bool fields_fit(const std::tuple<HeaderField<Types, Record>...> &table)
{
    std::size_t end = 0;
    const auto follows = [&end](std::size_t byte, std::size_t bytes) {
        const bool after_the_last = byte >= end;
        end = byte + bytes;
        return after_the_last;
    };
    const auto all_follow = [&](const HeaderField<Types, Record> &...fields) {
        return (follows(fields.byte, Types::Bytes) && ...);
    };
    return std::apply(all_follow, table) && end <= BlockBytes;
}

// Fills the record from a block of BlockBytes bytes. No value is looked at.
template <class Record, class... Types>
void decode_fields(const std::uint8_t *block, Record &record,
                   const std::tuple<HeaderField<Types, Record>...> &table)
{
    std::apply(
        [&](const HeaderField<Types, Record> &...fields) {
            ((record.*fields.member = Types::load(block + fields.byte)), ...);
        },
        table);
}

// Puts the record into a block of BlockBytes bytes. Bytes that no field covers stay as they are.
template <class Record, class... Types>
void encode_fields(const Record &record, std::uint8_t *block,
                   const std::tuple<HeaderField<Types, Record>...> &table)
{
    std::apply(
        [&](const HeaderField<Types, Record> &...fields) {
            (Types::store(block + fields.byte, record.*fields.member), ...);
        },
        table);
}

} // namespace velmorant
