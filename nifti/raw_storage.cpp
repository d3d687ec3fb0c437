#include "nifti/raw_storage.h"

#include "prefs/numbers.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <concepts>
#include <cstring>

namespace velmorant
{

// Calls `procedure` with a 0 of the type.
template <class Procedure>
static auto with_type(NiftiType type, Procedure procedure)
{
    switch (type) {
    case NiftiType::Int8:
        return procedure(std::int8_t{});
    case NiftiType::Uint8:
        return procedure(std::uint8_t{});
    case NiftiType::Int16:
        return procedure(std::int16_t{});
    case NiftiType::Uint16:
        return procedure(std::uint16_t{});
    case NiftiType::Int32:
        return procedure(std::int32_t{});
    case NiftiType::Uint32:
        return procedure(std::uint32_t{});
    case NiftiType::Int64:
        return procedure(std::int64_t{});
    case NiftiType::Uint64:
        return procedure(std::uint64_t{});
    case NiftiType::Float32:
        return procedure(float{});
    case NiftiType::Float64:
        break;
    }
    return procedure(double{});
}

template <class Value>
static Value load_value(std::span<const std::uint8_t> values, std::size_t index)
{
    Value value;
    std::memcpy(&value, values.data() + index * sizeof(Value), sizeof(Value));
    return value;
}

// In 64 bits; what has no room there is the largest number that has.
template <std::integral Value>
static std::int64_t held_value(Value value)
{
    if constexpr (std::same_as<Value, std::uint64_t>) {
        constexpr std::uint64_t most = std::numeric_limits<std::int64_t>::max();
        return static_cast<std::int64_t>(std::min(value, most));
    }
    return static_cast<std::int64_t>(value);
}

// Beyond the range of single precision: an infinity.
static float narrow(double value)
{
    constexpr double first_beyond = 0x1.ffffffp127; // halfway from the largest to the next in line
    if (std::fabs(value) >= first_beyond) {
        return std::copysign(std::numeric_limits<float>::infinity(), value > 0.0 ? 1.0F : -1.0F);
    }
    return static_cast<float>(value);
}

RawStorage float_storage()
{
    return {.type = StoredType::Float, .shift = 0, .pixel_scaling = 32700.0F};
}

// What a reader of the raw image makes of it.
static float raw_value(std::int64_t stored, float pixel_scaling)
{
    return static_cast<float>(stored) * (pixel_scaling / 32700.0F);
}

static bool is_exact(const NiftiImage &image, const IntegerRange &range, const RawStorage &storage)
{
    for (std::int64_t n = range.smallest; n <= range.largest; ++n) {
        const float meant = narrow(static_cast<double>(n) * image.slope + image.intercept);
        if (raw_value(n + storage.shift, storage.pixel_scaling) != meant) {
            return false;
        }
    }
    return true;
}

// The intercept in slopes, where that is a whole number which 16-bit integers leave room for.
static std::optional<std::int64_t> shift_of(const NiftiImage &image)
{
    const double shift = image.intercept / image.slope;
    if (!(std::fabs(shift) < 1e12) || shift != std::trunc(shift)) {
        return std::nullopt;
    }
    return static_cast<std::int64_t>(shift);
}

// The type that holds stored integers from the one to the other.
static std::optional<StoredType> short_type(std::int64_t smallest, std::int64_t largest)
{
    if (smallest >= std::numeric_limits<std::int16_t>::min() &&
        largest <= std::numeric_limits<std::int16_t>::max()) {
        return StoredType::SignedShort;
    }
    if (smallest >= 0 && largest <= std::numeric_limits<std::uint16_t>::max()) {
        return StoredType::UnsignedShort;
    }
    return std::nullopt;
}

std::optional<RawStorage> short_storage(const NiftiImage &image, const IntegerRange &range)
{
    const std::optional<std::int64_t> shift = shift_of(image);
    constexpr std::int64_t far = std::int64_t{1} << 40;
    if (!shift || range.smallest < -far || range.largest > far) {
        return std::nullopt;
    }
    const std::optional<StoredType> type =
        short_type(range.smallest + *shift, range.largest + *shift);
    if (!type) {
        return std::nullopt;
    }
    // Beside the nearest float to 32700 slopes, its neighbours: division rounds some of them to the slope.
    const float nearest = narrow(32700.0 * image.slope);
    const float infinity = std::numeric_limits<float>::infinity();
    for (const float candidate :
         {nearest, std::nextafter(nearest, infinity), std::nextafter(nearest, -infinity)}) {
        const float stated = text_to_float(decimal_text(candidate).c_str());
        const RawStorage storage{.type = *type, .shift = *shift, .pixel_scaling = stated};
        if (std::fabs(stated) > 1e-20F && is_exact(image, range, storage)) {
            return storage;
        }
    }
    return std::nullopt;
}

std::optional<IntegerRange> range_of_type(NiftiType type)
{
    return with_type(type, []<class Value>(Value /*zero*/) -> std::optional<IntegerRange> {
        if constexpr (std::integral<Value> && sizeof(Value) <= sizeof(std::int32_t)) {
            return IntegerRange{std::numeric_limits<Value>::min(),
                                std::numeric_limits<Value>::max()};
        }
        return std::nullopt;
    });
}

bool some_fit_shorts(const NiftiImage &image)
{
    const bool integers = image.type != NiftiType::Float32 && image.type != NiftiType::Float64;
    const std::optional<std::int64_t> shift = integers ? shift_of(image) : std::nullopt;
    return shift && short_storage(image, {-*shift, -*shift + 1}).has_value();
}

IntegerRange widen(IntegerRange range, NiftiType type, std::span<const std::uint8_t> values)
{
    return with_type(type, [&]<class Value>(Value /*zero*/) {
        if constexpr (std::integral<Value>) {
            for (std::size_t i = 0; i < values.size() / sizeof(Value); ++i) {
                const std::int64_t held = held_value(load_value<Value>(values, i));
                range.smallest = std::min(range.smallest, held);
                range.largest = std::max(range.largest, held);
            }
        }
        return range;
    });
}

void to_floats(const NiftiImage &image, std::span<const std::uint8_t> values, std::span<float> raw)
{
    const double slope = image.slope;
    const double intercept = image.intercept;
    const bool scaled = slope != 1.0 || intercept != 0.0;
    with_type(image.type, [&]<class Value>(Value /*zero*/) {
        if constexpr (std::same_as<Value, float>) {
            if (!scaled) {
                std::memcpy(raw.data(), values.data(), raw.size_bytes());
                return;
            }
        }
        for (std::size_t i = 0; i < raw.size(); ++i) {
            const auto value = static_cast<double>(load_value<Value>(values, i));
            raw[i] = narrow(scaled ? value * slope + intercept : value);
        }
    });
}

void to_shorts(const NiftiImage &image, std::int64_t shift, std::span<const std::uint8_t> values,
               std::span<std::uint16_t> raw)
{
    const auto added = static_cast<std::uint64_t>(shift);
    with_type(image.type, [&]<class Value>(Value /*zero*/) {
        if constexpr (std::integral<Value>) {
            for (std::size_t i = 0; i < raw.size(); ++i) {
                const std::int64_t value = held_value(load_value<Value>(values, i));
                raw[i] = static_cast<std::uint16_t>(static_cast<std::uint64_t>(value) + added);
            }
        }
    });
}

} // namespace velmorant
