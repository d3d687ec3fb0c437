#include "image/allocate.h"

#include "prefs/error_report.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <memory>

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
// costs more than the work on it, and a large volume has a hundred thousand of the smaller ones. Those
// that are left are had at once, unless the block is so large that it may never be filled. A system
// that does neither doesn't matter.
static float *prepare_pages(float *pixels, [[maybe_unused]] std::size_t count)
{
#if defined(MADV_HUGEPAGE) && defined(MADV_POPULATE_WRITE)
    constexpr std::size_t large_page = 2097152;
    constexpr std::size_t most_at_once = 8388608;
    const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    void *start = pixels;
    std::size_t bytes = count * sizeof(float);
    if (bytes >= large_page && std::align(page, bytes - page, start, bytes) != nullptr) {
        madvise(start, bytes, MADV_HUGEPAGE);
        if (bytes <= most_at_once) {
            madvise(start, bytes, MADV_POPULATE_WRITE);
        }
    }
#endif
    return pixels;
}

float *allocate_float_zero(std::int32_t count, const char *label)
{
    float *pixels = allocate<float>(count, label, true);
    return prepare_pages(pixels, static_cast<std::size_t>(count));
}

float *allocate_float(std::int32_t count, const char *label)
{
    float *pixels = allocate<float>(count, label, false);
    return prepare_pages(pixels, static_cast<std::size_t>(count));
}

} // namespace velmorant
