#include "nifti/conversion.h"

#include "image/allocate.h"
#include "image/byte_order.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <type_traits>
#include <vector>

namespace velmorant
{

static constexpr std::size_t PieceBytes = std::size_t{1} << 20;

static std::size_t size_along(const NiftiImage &image, std::size_t axis)
{
    return static_cast<std::size_t>(image.size.at(axis));
}

// Reads the next volume, in pieces of whole rows. procedure: called with the bytes of each row and its
// place along the second and the third axis.
template <class Procedure>
static void read_rows(const NiftiImage &image, NiftiData &data, Procedure procedure)
{
    const std::size_t row_bytes = size_along(image, 0) * image.value_bytes;
    const std::size_t rows = size_along(image, 1) * size_along(image, 2);
    const std::size_t rows_at_once = std::clamp<std::size_t>(PieceBytes / row_bytes, 1, rows);
    std::vector<std::uint8_t> piece(rows_at_once * row_bytes);
    for (std::size_t first = 0; first < rows; first += rows_at_once) {
        const std::size_t count = std::min(rows_at_once, rows - first);
        const std::span<std::uint8_t> bytes(piece.data(), count * row_bytes);
        data.read(bytes);
        for (std::size_t row = 0; row < count; ++row) {
            procedure(bytes.subspan(row * row_bytes, row_bytes),
                      (first + row) % size_along(image, 1), (first + row) / size_along(image, 1));
        }
    }
}

RawStorage choose_storage(const NiftiImage &image, const Progress &progress)
{
    if (const auto range = range_of_type(image.type)) {
        if (const auto storage = short_storage(image, *range)) {
            return *storage;
        }
    }
    if (!some_fit_shorts(image)) {
        return float_storage();
    }
    IntegerRange range;
    NiftiData data(image);
    for (std::int32_t frame = 1; frame <= image.frames; ++frame) {
        progress("looking at", frame);
        read_rows(image, data, [&](std::span<const std::uint8_t> row, auto /*y*/, auto /*z*/) {
            range = widen(range, image.type, row);
        });
    }
    return short_storage(image, range).value_or(float_storage());
}

ImageHeader describe_raw(const NiftiImage &image, const AxisOrder &order, const RawStorage &storage)
{
    ImageHeader header{};
    create_standard_image_header(header);
    header.num_frames = image.frames;
    header.x_dim = image.size.at(order.source[0]);
    header.y_dim = image.size.at(order.source[1]);
    header.num_slices = image.size.at(order.source[2]);
    header.pixel_size_x = static_cast<float>(order.pixel_size[0]);
    header.pixel_size_y = static_cast<float>(order.pixel_size[1]);
    header.slice_thickness = static_cast<float>(order.pixel_size[2]);
    header.pixel_scaling = storage.pixel_scaling;
    header.right_on_left = order.standard[0] ? 1 : 0;
    header.anterior_to_posterior = order.standard[1] ? 1 : 0;
    header.superior_to_inferior = order.standard[2] ? 1 : 0;
    header.byte_order = 0;
    header.data_format = static_cast<std::int32_t>(storage.type);
    return header;
}

// How far apart in the raw image two values are that are neighbours along each stored axis.
static std::array<std::size_t, 3> strides_of(const NiftiImage &image, const AxisOrder &order)
{
    std::array<std::size_t, 3> strides{};
    std::size_t stride = 1;
    for (const std::size_t axis : order.source) {
        strides.at(axis) = stride;
        stride *= size_along(image, axis);
    }
    return strides;
}

// The bit pattern of a raw value, in the byte order of the file.
template <class Raw>
static auto stored_word(Raw value)
{
    using Word = std::conditional_t<sizeof(Raw) == 4, std::uint32_t, std::uint16_t>;
    const auto word = std::bit_cast<Word>(value);
    return std::endian::native == std::endian::little ? word : swap_bytes(word);
}

// Writes all frames as elements of type Raw. convert: called with the bytes of a row and where its raw
// values go.
template <class Raw, class Convert>
static void write_as(const NiftiImage &image, const AxisOrder &order, std::FILE *file,
                     const Progress &progress, Convert convert)
{
    using Word = decltype(stored_word(Raw{}));
    const std::array<std::size_t, 3> strides = strides_of(image, order);
    const std::size_t pixels = size_along(image, 0) * size_along(image, 1) * size_along(image, 2);
    std::vector<Word> volume(pixels);
    std::vector<Raw> row(size_along(image, 0));
    NiftiData data(image);
    for (std::int32_t frame = 1; frame <= image.frames; ++frame) {
        progress("converting", frame);
        read_rows(image, data,
                  [&](std::span<const std::uint8_t> bytes, std::size_t y, std::size_t z) {
                      convert(bytes, std::span<Raw>(row));
                      Word *place = volume.data() + y * strides[1] + z * strides[2];
                      for (std::size_t x = 0; x < row.size(); ++x) {
                          place[x * strides[0]] = stored_word(row[x]);
                      }
                  });
        std::fwrite(volume.data(), sizeof(Word), volume.size(), file);
    }
}

std::size_t write_frames(const NiftiImage &image, const AxisOrder &order, const RawStorage &storage,
                         std::FILE *file, const Progress &progress)
{
    std::size_t not_finite = 0;
    if (storage.type == StoredType::Float) {
        write_as<float>(image, order, file, progress, [&](auto bytes, std::span<float> row) {
            to_floats(image, bytes, row);
            for (const float value : row) {
                not_finite += static_cast<std::size_t>(!std::isfinite(value));
            }
        });
    } else {
        write_as<std::uint16_t>(image, order, file, progress,
                                [&](auto bytes, std::span<std::uint16_t> row) {
                                    to_shorts(image, storage.shift, bytes, row);
                                });
    }
    return not_finite;
}

} // namespace velmorant
