#include "image/allocate.h"

#include "prefs/error_report.h"

#include <algorithm>
#include <array>
#include <cstdio>

#include <sys/mman.h>
#include <unistd.h>

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

// Asks for pages of 2 MiB for what of a large block of pixels they can hold: the first touch of a page
// costs more than the work on it, and a large volume has a hundred thousand of the smaller ones. A
// block that is not much larger than such a page, so that many small ones are left, is touched at
// once. A system that does neither is only slower.
static float *prepare_pages(float *pixels, [[maybe_unused]] std::size_t count)
{
    [[maybe_unused]] constexpr std::size_t large_page = 2097152;
    [[maybe_unused]] const std::size_t bytes = count * sizeof(float);
#ifdef MADV_HUGEPAGE
    const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    const std::size_t before_page = -reinterpret_cast<std::uintptr_t>(pixels) % page;
    auto *first_page = reinterpret_cast<std::uint8_t *>(pixels) + before_page;
    if (bytes >= large_page) {
        madvise(first_page, bytes - before_page, MADV_HUGEPAGE);
    }
#ifdef MADV_POPULATE_WRITE
    if (bytes >= large_page && bytes <= 4 * large_page) {
        madvise(first_page, bytes - before_page, MADV_POPULATE_WRITE);
    }
#endif
#endif
    return pixels;
}

float *allocate_float_zero(std::int32_t count, const char *label)
{
    auto *pixels = allocate<float>(count, label, true);
    return prepare_pages(pixels, static_cast<std::size_t>(count));
}

float *allocate_float(std::int32_t count, const char *label)
{
    auto *pixels = allocate<float>(count, label, false);
    return prepare_pages(pixels, static_cast<std::size_t>(count));
}

} // namespace velmorant
