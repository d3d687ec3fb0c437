#include "nifti/conversion.h"

#include "image/byte_order.h"
#include "image/volume_box.h"
#include "nifti/nifti_data.h"
#include "nifti/raw_file.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <span>
#include <type_traits>
#include <vector>

namespace velmorant
{

// Values of a row that are converted at a time.
static constexpr std::size_t StretchValues = 16384;

// Values that are brought into the raw order at a time.
static constexpr std::int32_t SlabValues = 1048576;

// The stored axes of a volume as x, y and z, to divide it into pieces.
static ImageHeader stored_shape(const NiftiImage &image)
{
    ImageHeader shape{};
    shape.x_dim = image.size[0];
    shape.y_dim = image.size[1];
    shape.num_slices = image.size[2];
    return shape;
}

static std::size_t volume_values(const NiftiImage &image)
{
    return static_cast<std::size_t>(volume_bytes(image)) / image.value_bytes;
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
    std::vector<std::uint8_t> stretch(StretchValues * image.value_bytes);
    for (std::int32_t frame = 1; frame <= image.frames; ++frame) {
        progress("looking at", frame);
        for (std::size_t left = volume_values(image); left > 0;) {
            const std::size_t count = std::min(left, StretchValues);
            const auto bytes = std::span(stretch).first(count * image.value_bytes);
            data.read(bytes);
            range = widen(range, image.type, bytes);
            left -= count;
        }
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

// The bit pattern of a raw value, in the byte order of the file.
template <class Raw>
static auto stored_word(Raw value)
{
    using Word = std::conditional_t<sizeof(Raw) == 4, std::uint32_t, std::uint16_t>;
    const auto word = std::bit_cast<Word>(value);
    return std::endian::native == std::endian::little ? word : swap_bytes(word);
}

namespace
{

// A stored box on its way into a raw image.
template <class Word>
struct Slab {
    std::array<std::size_t, 3> axes; // the stored axes in the order of the words, the fastest first
    std::vector<Word> words;
    std::vector<std::uint8_t> stored; // a stretch of a row
};

} // namespace

// Reads a stored box and converts it. convert: called with the bytes of some values and where their
// raw values go.
template <class Raw, class Word, class Convert>
static void fill_slab(const NiftiImage &image, NiftiData &data, const VolumeBox &box,
                      Slab<Word> &slab, Convert convert)
{
    const std::array<std::int32_t, 3> size{box.width, box.height, box.depth};
    std::array<std::size_t, 3> stride{}; // of each stored axis in the slab
    std::size_t words = 1;
    for (const std::size_t axis : slab.axes) {
        stride.at(axis) = words;
        words *= static_cast<std::size_t>(size.at(axis));
    }
    std::vector<Raw> values(StretchValues);
    const auto width = static_cast<std::size_t>(box.width);
    const auto height = static_cast<std::size_t>(box.height);
    for (std::size_t row = 0; row < box_size(box) / width; ++row) {
        Word *to = slab.words.data() + row % height * stride[1] + row / height * stride[2];
        for (std::size_t x = 0; x < width; x += StretchValues) {
            const std::size_t count = std::min(StretchValues, width - x);
            const auto stored = std::span(slab.stored).first(count * image.value_bytes);
            data.read(stored);
            convert(stored, std::span(values).first(count));
            for (std::size_t i = 0; i < count; ++i) {
                to[(x + i) * stride[0]] = stored_word(values[i]);
            }
        }
    }
}

// The same box in a raw volume whose x, y and z are these stored axes.
static VolumeBox raw_box(const VolumeBox &stored, const std::array<std::size_t, 3> &source)
{
    const std::array<std::int32_t, 3> first{stored.x, stored.y, stored.z};
    const std::array<std::int32_t, 3> size{stored.width, stored.height, stored.depth};
    const auto [x, y, z] = source;
    return {first.at(x), first.at(y), first.at(z), size.at(x), size.at(y), size.at(z)};
}

// Writes all frames as elements of type Raw.
template <class Raw, class Convert>
static void write_as(const NiftiImage &image, const AxisOrder &order, std::FILE *stream,
                     const Progress &progress, Convert convert)
{
    using Word = decltype(stored_word(Raw{}));
    const ImageHeader shape = stored_shape(image);
    const auto [x, y, z] = order.source;
    // Slabs are thin along the last stored axis: where that becomes x they are written turned.
    const bool turned = x == 2;
    RawFile<Word> file(stream, {image.size.at(x), image.size.at(y), image.size.at(z)}, turned,
                       SlabValues);
    const std::size_t room = std::min<std::size_t>(volume_values(image), SlabValues);
    Slab<Word> slab{.axes = turned ? std::array{y, x, z} : order.source,
                    .words = std::vector<Word>(room),
                    .stored = std::vector<std::uint8_t>(StretchValues * image.value_bytes)};
    NiftiData data(image);
    for (std::int32_t frame = 1; frame <= image.frames && std::ferror(stream) == 0; ++frame) {
        progress("converting", frame);
        for (std::int64_t piece = 0; piece < count_pieces(shape, SlabValues); ++piece) {
            const VolumeBox box = volume_piece(shape, piece, SlabValues);
            fill_slab<Raw>(image, data, box, slab, convert);
            file.write_box(raw_box(box, order.source), slab.words.data());
        }
        file.finish_volume();
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
