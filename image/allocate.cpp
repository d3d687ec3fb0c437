#include "image/allocate.h"

#include "prefs/error_report.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace velmorant
{

[[noreturn]] static void report_no_memory(std::int64_t bytes, const char *label)
{
    std::array<char, 200> text{};
    std::snprintf(text.data(), text.size(), "%s (%ldKB)", label, static_cast<long>(bytes / 1000));
    print_error_message(2, "can't allocate memory for ", text.data());
}

// A block of at least one byte, so that an empty buffer is not mistaken for a failure.
template <class Element>
static Element *allocate(std::int32_t count, const char *label, bool zero_filled)
{
    const std::int64_t bytes = std::int64_t{count} * std::int64_t{sizeof(Element)};
    if (count < 0) {
        report_no_memory(bytes, label);
    }
    const auto room = static_cast<std::size_t>(std::max<std::int64_t>(bytes, 1));
    void *block = zero_filled ? std::calloc(room, 1) : std::malloc(room);
    if (block == nullptr) {
        report_no_memory(bytes, label);
    }
    return static_cast<Element *>(block);
}

unsigned char *allocate_unsigned_char_zero(std::int32_t count, const char *label)
{
    return allocate<unsigned char>(count, label, true);
}

unsigned char *allocate_char_zero(std::int32_t count, const char *label)
{
    return allocate_unsigned_char_zero(count, label);
}

std::int16_t *allocate_short_int_zero(std::int32_t count, const char *label)
{
    return allocate<std::int16_t>(count, label, true);
}

std::int32_t *allocate_int_zero(std::int32_t count, const char *label)
{
    return allocate<std::int32_t>(count, label, true);
}

float *allocate_float_zero(std::int32_t count, const char *label)
{
    return allocate<float>(count, label, true);
}

float *allocate_float(std::int32_t count, const char *label)
{
    return allocate<float>(count, label, false);
}

} // namespace velmorant
