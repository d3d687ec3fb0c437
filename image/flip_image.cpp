#include "image/flip_image.h"

#include "image/image_geometry.h"
#include "prefs/error_report.h"

#include <algorithm>

namespace velmorant
{

static bool is_flag(std::int32_t value)
{
    return value == 0 || value == 1;
}

static void check_flags(std::int32_t x_flag, std::int32_t y_flag, std::int32_t z_flag)
{
    if (!is_flag(x_flag) && !is_flag(y_flag) && !is_flag(z_flag)) {
        print_error_message(1, "internal flag error");
    }
}

// Reverses the order of `count` items of `length` floats each.
static void reverse_items(float *items, std::size_t count, std::size_t length)
{
    for (std::size_t first = 0, last = count; first + 1 < last; ++first) {
        --last;
        std::swap_ranges(items + first * length, items + (first + 1) * length,
                         items + last * length);
    }
}

// Flips a volume of `size` pixels, which is not 0.
static void flip_volume(float *buffer, std::size_t size, const ImageHeader &header, bool flip_x,
                        bool flip_y, bool flip_z)
{
    const auto row = static_cast<std::size_t>(header.x_dim);
    const auto rows = static_cast<std::size_t>(header.y_dim);
    const std::size_t slice = row * rows;
    const float *end = buffer + size;
    if (flip_x) {
        for (float *start = buffer; start != end; start += row) {
            std::reverse(start, start + row);
        }
    }
    if (flip_y) {
        for (float *start = buffer; start != end; start += slice) {
            reverse_items(start, rows, row);
        }
    }
    if (flip_z) {
        reverse_items(buffer, size / slice, slice);
    }
}

// Flips `volumes` volumes that follow one another.
static void flip_volumes(float *buffer, std::size_t volumes, const ImageHeader &header,
                         std::int32_t right_on_left, std::int32_t anterior_to_posterior,
                         std::int32_t superior_to_inferior)
{
    check_flags(right_on_left, anterior_to_posterior, superior_to_inferior);
    const std::size_t size = checked_image_size(header);
    for (std::size_t volume = 0; size > 0 && volume < volumes; ++volume) {
        flip_volume(buffer + volume * size, size, header, right_on_left == 0,
                    anterior_to_posterior == 0, superior_to_inferior == 0);
    }
}

void flip_image(float *buffer, const ImageHeader &header, std::int32_t right_on_left,
                std::int32_t anterior_to_posterior, std::int32_t superior_to_inferior)
{
    flip_volumes(buffer, 1, header, right_on_left, anterior_to_posterior, superior_to_inferior);
}

void flip_image_multiframe(float *buffer, const ImageHeader &header, std::int32_t right_on_left,
                           std::int32_t anterior_to_posterior, std::int32_t superior_to_inferior)
{
    flip_volumes(buffer, checked_volume_count(header), header, right_on_left, anterior_to_posterior,
                 superior_to_inferior);
}

} // namespace velmorant
