#include "image/stored_volume.h"

#include "prefs/end_run.h"
#include "prefs/error_report.h"

#include <algorithm>
#include <cstdio>

#include <sys/types.h>

namespace velmorant
{

static_assert(sizeof(off_t) == 8, "volumes may begin beyond 2 GiB");

// Bytes that are read at a time: few enough to be in the cache still when they are decoded.
static constexpr std::int64_t ReadBytes = 131072;

// Gaps of up to so many bytes are read, which is quicker than a seek.
static constexpr std::int64_t SkippedBytes = 4096;

Block<unsigned char> allocate_read_buffer(std::uint64_t bytes, const char *label)
{
    const std::uint64_t room = std::min<std::uint64_t>(bytes, ReadBytes);
    return Block<unsigned char>(
        allocate_unsigned_char_zero(static_cast<std::int32_t>(room), label));
}

namespace
{

// A box along one axis: `count` pixels, which are `stride` elements apart in the file.
struct StoredAxis {
    std::int64_t count;
    std::int64_t stride;
    bool reversed;
};

// A box in the order in which it is stored.
struct StoredBox {
    std::int64_t first; // element
    StoredAxis x;
    StoredAxis y;
    StoredAxis z;
};

// What of the file is in the buffer: the elements from `first` up to, without, `end`.
struct BufferedElements {
    std::int64_t first;
    std::int64_t end;
};

} // namespace

// Where the box begins along an axis of `extent` pixels, in the stored order.
static std::int64_t stored_place(std::int32_t place, std::int32_t count, std::int32_t extent,
                                 bool reversed)
{
    return reversed ? std::int64_t{extent} - count - place : place;
}

static StoredBox locate_box(const ImageHeader &header, const VolumeBox &box)
{
    const bool flip_x = header.right_on_left == 0;
    const bool flip_y = header.anterior_to_posterior == 0;
    const bool flip_z = header.superior_to_inferior == 0;
    const std::int64_t row = header.x_dim;
    const std::int64_t slice = row * header.y_dim;
    return {.first = stored_place(box.x, box.width, header.x_dim, flip_x) +
                     stored_place(box.y, box.height, header.y_dim, flip_y) * row +
                     stored_place(box.z, box.depth, header.num_slices, flip_z) * slice,
            .x = {.count = box.width, .stride = 1, .reversed = flip_x},
            .y = {.count = box.height, .stride = row, .reversed = flip_y},
            .z = {.count = box.depth, .stride = slice, .reversed = flip_z}};
}

// Merges two axes into one if their pixels follow one another in the file and in memory.
static bool merge(StoredAxis &inner, StoredAxis &outer)
{
    const bool same_way = inner.reversed == outer.reversed || inner.count == 1 || outer.count == 1;
    if (!same_way || (outer.count > 1 && outer.stride != inner.count * inner.stride)) {
        return false;
    }
    inner.reversed = inner.count == 1 ? outer.reversed : inner.reversed;
    inner.count *= outer.count;
    outer.count = 1;
    return true;
}

// The same box in as few and as long rows as possible.
static StoredBox merge_rows(StoredBox box)
{
    if (merge(box.x, box.y)) {
        box.y = box.z;
        box.z.count = 1;
        merge(box.x, box.y);
    } else {
        merge(box.y, box.z);
    }
    return box;
}

static std::int64_t element_bytes(const StoredVolume &volume)
{
    return static_cast<std::int64_t>(stored_bytes(volume.type));
}

// How many elements to read at once from the start of a row. Rows and slices that lie within
// `SkippedBytes` of each other are read together.
static std::int64_t worth_reading(const StoredVolume &volume, const StoredBox &box, std::int64_t y,
                                  std::int64_t z)
{
    const std::int64_t skipped = SkippedBytes / element_bytes(volume);
    const std::int64_t row = box.x.count;
    if (box.y.stride - row > skipped) {
        return row;
    }
    const std::int64_t rows = (box.y.count - 1) * box.y.stride + row;
    const std::int64_t rows_left = rows - y * box.y.stride;
    return box.z.stride - rows > skipped ? rows_left
                                         : (box.z.count - 1 - z) * box.z.stride + rows_left;
}

// Reads `wanted` elements into the buffer. Returns how many there are; the part ends there if they
// are fewer.
static std::int64_t read_elements(StoredVolume &volume, StoredPart &part, std::int64_t element,
                                  std::int64_t wanted)
{
    const std::int64_t bytes = element_bytes(volume);
    std::FILE *file = volume.file.get();
    const bool found = fseeko(file, part.offset + element * bytes, SEEK_SET) == 0;
    const std::size_t got = found ? std::fread(volume.buffer.get(), static_cast<std::size_t>(bytes),
                                               static_cast<std::size_t>(wanted), file)
                                  : 0;
    const auto read = static_cast<std::int64_t>(got);
    if (read < wanted && volume.short_read != nullptr) {
        std::printf("%s (%d expected, %d read)...\n", volume.short_read,
                    static_cast<std::int32_t>(wanted * bytes),
                    static_cast<std::int32_t>(read * bytes));
        end_run(-1);
    }
    if (!found || std::ferror(file) != 0) {
        print_error_message(2, "can't read ", volume.name.c_str());
    }
    if (read < wanted) {
        part.elements = element + read;
    }
    return read;
}

// Fills `length` pixels from the elements from `first` on. worth: how many are worth reading at
// once.
static void read_row(StoredVolume &volume, BufferedElements &buffered, std::int64_t first,
                     std::int64_t length, std::int64_t worth, float *pixels)
{
    const std::int64_t room = ReadBytes / element_bytes(volume);
    while (length > 0) {
        StoredPart &part = volume.parts[static_cast<std::size_t>(first / volume.part_pixels)];
        const std::int64_t element = first % volume.part_pixels;
        std::int64_t count = std::min(length, volume.part_pixels - element);
        if (element >= part.elements) {
            std::fill_n(pixels, count, part.rest);
        } else {
            if (first < buffered.first || first >= buffered.end) {
                const std::int64_t wanted = std::min({worth, room, part.elements - element});
                buffered = {.first = first,
                            .end = first + read_elements(volume, part, element, wanted)};
            }
            count = std::min(count, buffered.end - first);
            const std::int64_t place = (first - buffered.first) * element_bytes(volume);
            decode_pixels(volume.type, volume.byte_order, volume.buffer.get() + place, pixels,
                          static_cast<std::size_t>(count), part.factor);
        }
        first += count;
        length -= count;
        worth -= count;
        pixels += count;
    }
}

bool is_blank(const StoredVolume &volume, const VolumeBox &box)
{
    if (box_size(box) == 0) {
        return true;
    }
    const StoredBox stored = locate_box(volume.header, box);
    const std::int64_t slices = volume.parts.size() == 1 ? 1 : stored.z.count;
    for (std::int64_t slice = 0; slice < slices; ++slice) {
        const std::int64_t first = stored.first + slice * stored.z.stride;
        const StoredPart &part = volume.parts[static_cast<std::size_t>(first / volume.part_pixels)];
        if (first % volume.part_pixels < part.elements ||
            std::bit_cast<std::uint32_t>(part.rest) != 0) {
            return false;
        }
    }
    return true;
}

// Where in the standard orientation a place along an axis is.
static std::int64_t standard_place(std::int64_t place, const StoredAxis &axis)
{
    return axis.reversed ? axis.count - 1 - place : place;
}

void read_box(StoredVolume &volume, const VolumeBox &box, float *pixels)
{
    if (box_size(box) == 0) {
        return;
    }
    const StoredBox stored = merge_rows(locate_box(volume.header, box));
    const std::int64_t length = stored.x.count;
    BufferedElements buffered{};
    for (std::int64_t z = 0; z < stored.z.count; ++z) {
        for (std::int64_t y = 0; y < stored.y.count; ++y) {
            float *row = pixels + (standard_place(z, stored.z) * stored.y.count +
                                   standard_place(y, stored.y)) *
                                      length;
            read_row(volume, buffered, stored.first + z * stored.z.stride + y * stored.y.stride,
                     length, worth_reading(volume, stored, y, z), row);
            if (stored.x.reversed) {
                std::reverse(row, row + length);
            }
        }
    }
}

} // namespace velmorant
