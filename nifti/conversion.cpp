#include "nifti/conversion.h"

#include "image/byte_order.h"
#include "nifti/nifti_data.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <type_traits>
#include <vector>

namespace velmorant
{

static std::size_t size_along(const NiftiImage &image, std::size_t axis)
{
    return static_cast<std::size_t>(image.size.at(axis));
}

// Reads the next volume. procedure: called with the bytes of each row and its place along the second and
// the third axis.
template <class Procedure>
static void read_rows(const NiftiImage &image, NiftiData &data, Procedure procedure)
{
    std::vector<std::uint8_t> row(size_along(image, 0) * image.value_bytes);
    for (std::size_t z = 0; z < size_along(image, 2); ++z) {
        for (std::size_t y = 0; y < size_along(image, 1); ++y) {
            data.read(row);
            procedure(std::span<const std::uint8_t>(row), y, z);
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

// Puts rows into a raw volume. Where they don't lie along x there, as many are held as make a stretch of
// it that is worth writing: neighbours along x are apart by a row or by a plane in the stored order.
template <class Word>
class RowPlacement
{
public:
    RowPlacement(const NiftiImage &image, const AxisOrder &order)
        : size{size_along(image, 0), size_along(image, 1), size_along(image, 2)},
          strides(strides_of(image, order)), along(order.source[0]),
          rows_apart(along == 2 ? size[1] : 1), volume(size[0] * size[1] * size[2]),
          slab(along == 0 ? 0 : std::min(Stretch, size.at(along)) * rows_apart * size[0])
    {
    }

    void place(std::span<const Word> row, std::size_t y, std::size_t z)
    {
        if (along == 0) {
            std::ranges::copy(row, volume.begin() + offset(y * strides[1] + z * strides[2]));
            return;
        }
        const std::size_t x = along == 1 ? y : z; // in the raw volume
        const std::size_t other = along == 1 ? 0 : y;
        const std::size_t held = x % Stretch * rows_apart + other;
        std::ranges::copy(row, slab.begin() + offset(held * size[0]));
        const bool last_of_stretch = x % Stretch == Stretch - 1 || x == size.at(along) - 1;
        if (last_of_stretch && other == rows_apart - 1) {
            write_slab(x - x % Stretch, x % Stretch + 1, z);
        }
    }

    [[nodiscard]] const std::vector<Word> &whole() const
    {
        return volume;
    }

private:
    static constexpr std::size_t Stretch = 32;

    static auto offset(std::size_t element)
    {
        return static_cast<std::ptrdiff_t>(element);
    }

    void write_slab(std::size_t first_x, std::size_t count, std::size_t z)
    {
        for (std::size_t other = 0; other < rows_apart; ++other) {
            const std::size_t row = along == 1 ? z * strides[2] : other * strides[1];
            for (std::size_t i = 0; i < size[0]; ++i) {
                Word *to = volume.data() + row + i * strides[0] + first_x;
                const Word *from = slab.data() + other * size[0] + i;
                for (std::size_t x = 0; x < count; ++x) {
                    to[x] = from[x * rows_apart * size[0]];
                }
            }
        }
    }

    std::array<std::size_t, 3> size; // along the stored axes
    std::array<std::size_t, 3> strides;
    std::size_t along;      // the stored axis that is x in the raw volume
    std::size_t rows_apart; // neighbours along it
    std::vector<Word> volume;
    std::vector<Word> slab;
};

// Writes all frames as elements of type Raw. convert: called with the bytes of a row and where its raw
// values go.
template <class Raw, class Convert>
static void write_as(const NiftiImage &image, const AxisOrder &order, std::FILE *file,
                     const Progress &progress, Convert convert)
{
    using Word = decltype(stored_word(Raw{}));
    RowPlacement<Word> placement(image, order);
    std::vector<Raw> row(size_along(image, 0));
    std::vector<Word> words(row.size());
    NiftiData data(image);
    for (std::int32_t frame = 1; frame <= image.frames; ++frame) {
        progress("converting", frame);
        read_rows(image, data,
                  [&](std::span<const std::uint8_t> bytes, std::size_t y, std::size_t z) {
                      convert(bytes, std::span<Raw>(row));
                      std::ranges::transform(row, words.begin(), stored_word<Raw>);
                      placement.place(words, y, z);
                  });
        const std::vector<Word> &volume = placement.whole();
        if (std::fwrite(volume.data(), sizeof(Word), volume.size(), file) != volume.size()) {
            return; // which whoever closes the file will see
        }
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
