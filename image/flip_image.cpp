#include "image/flip_image.h"

#include "image/image_geometry.h"
#include "image/wide_vectors.h"
#include "prefs/error_report.h"

#include <algorithm>
#include <utility>

namespace velmorant
{

static bool is_flag(std::int32_t value)
{
    return value == 0 || value == 1;
}

void check_flags(std::int32_t right_on_left, std::int32_t anterior_to_posterior,
                 std::int32_t superior_to_inferior)
{
    if (!is_flag(right_on_left) && !is_flag(anterior_to_posterior) &&
        !is_flag(superior_to_inferior)) {
        print_error_message(1, "internal flag error");
    }
}

// Swaps two rows that don't overlap, each turned round if wanted.
VELMORANT_WIDE_VECTORS
static void swap_rows(float *row, float *other, std::size_t length, bool turn)
{
    if (turn) {
        for (std::size_t i = 0; i < length; ++i) {
            std::swap(row[i], other[length - 1 - i]);
        }
    } else {
        std::swap_ranges(row, row + length, other);
    }
}

// Flips a volume of `size` pixels, which is not 0, row by row: each row and the one that it changes
// places with, once.
static void flip_volume(float *buffer, std::size_t size, const ImageHeader &header, bool flip_x,
                        bool flip_y, bool flip_z)
{
    const auto length = static_cast<std::size_t>(header.x_dim);
    const auto rows = static_cast<std::size_t>(header.y_dim);
    const std::size_t slices = size / length / rows;
    for (std::size_t slice = 0; slice < slices; ++slice) {
        const std::size_t other_slice = flip_z ? slices - 1 - slice : slice;
        for (std::size_t row = 0; row < rows; ++row) {
            const std::size_t other_row = flip_y ? rows - 1 - row : row;
            float *here = buffer + (slice * rows + row) * length;
            float *there = buffer + (other_slice * rows + other_row) * length;
            if (here < there) {
                swap_rows(here, there, length, flip_x);
            } else if (here == there && flip_x) {
                std::reverse(here, here + length);
            }
        }
    }
}

// Flips `volumes` volumes that follow one another.
static void flip_volumes(float *buffer, std::size_t volumes, const ImageHeader &header,
                         std::int32_t right_on_left, std::int32_t anterior_to_posterior,
                         std::int32_t superior_to_inferior)
{
    check_flags(right_on_left, anterior_to_posterior, superior_to_inferior);
    const std::size_t size = checked_image_size(header);
    const bool flips =
        right_on_left == 0 || anterior_to_posterior == 0 || superior_to_inferior == 0;
    for (std::size_t volume = 0; flips && size > 0 && volume < volumes; ++volume) {
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
