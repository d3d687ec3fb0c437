#include "nifti/conversion.h"

#include "image/byte_order.h"
#include "image/volume_box.h"
#include "nifti/nifti_data.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <type_traits>
#include <utility>
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

// A raw image's data file, which is written at any place.
template <class Word>
struct RawFile {
    std::FILE *stream;
    std::array<std::size_t, 3> axes; // the stored axes that are x, y and z
    std::int64_t x_dim;
    std::int64_t y_dim;
    std::int64_t place = 0; // in words
};

} // namespace

template <class Word>
static void seek(RawFile<Word> &file, std::int64_t place)
{
    if (file.place != place) {
        static_cast<void>(fseeko(file.stream, place * std::int64_t{sizeof(Word)}, SEEK_SET));
        file.place = place;
    }
}

// Writes a box of the volume that begins at `first`.
template <class Word>
static void write_box(RawFile<Word> &file, std::int64_t first, const VolumeBox &box,
                      const Word *words)
{
    std::int64_t run = box.width;
    std::int64_t rows = box.height;
    std::int64_t slices = box.depth;
    if (box.width == file.x_dim) {
        run *= std::exchange(rows, 1);
        run *= box.height == file.y_dim ? std::exchange(slices, 1) : 1;
    }
    for (std::int64_t z = box.z; z < box.z + slices; ++z) {
        for (std::int64_t y = box.y; y < box.y + rows; ++y) {
            seek(file, first + (z * file.y_dim + y) * file.x_dim + box.x);
            std::fwrite(words, sizeof(Word), static_cast<std::size_t>(run), file.stream);
            words += run;
            file.place += run;
        }
    }
}

// Reads a stored box, converts it and writes it. convert: called with the bytes of some values and where
// their raw values go.
template <class Raw, class Word, class Convert>
static void write_slab(const NiftiImage &image, NiftiData &data, const VolumeBox &stored,
                       RawFile<Word> &file, std::int64_t first, std::vector<Word> &slab,
                       Convert convert)
{
    const std::array<std::int32_t, 3> start{stored.x, stored.y, stored.z};
    const std::array<std::int32_t, 3> count{stored.width, stored.height, stored.depth};
    std::array<std::size_t, 3> stride{}; // in the slab, of each stored axis
    std::size_t words = 1;
    for (const std::size_t axis : file.axes) {
        stride.at(axis) = words;
        words *= static_cast<std::size_t>(count.at(axis));
    }
    std::array<std::uint8_t, StretchValues * sizeof(double)> bytes;
    std::array<Raw, StretchValues> values;
    const auto width = static_cast<std::size_t>(stored.width);
    for (std::size_t row = 0; row < box_size(stored) / width; ++row) {
        const auto height = static_cast<std::size_t>(stored.height);
        Word *to = slab.data() + row % height * stride[1] + row / height * stride[2];
        for (std::size_t x = 0; x < width; x += StretchValues) {
            const std::size_t length = std::min(StretchValues, width - x);
            const auto read = std::span(bytes).first(length * image.value_bytes);
            data.read(read);
            convert(read, std::span(values).first(length));
            for (std::size_t i = 0; i < length; ++i) {
                to[(x + i) * stride[0]] = stored_word(values[i]);
            }
        }
    }
    const auto [x, y, z] = file.axes;
    write_box(file, first,
              {start.at(x), start.at(y), start.at(z), count.at(x), count.at(y), count.at(z)},
              slab.data());
}

// Turns the slices of a volume round whose x and y were written the other way round.
template <class Word>
static void transpose_slices(RawFile<Word> &file, std::int64_t first, std::int64_t end)
{
    const auto width = static_cast<std::size_t>(file.x_dim);
    const auto height = static_cast<std::size_t>(file.y_dim);
    std::vector<Word> before(width * height);
    std::vector<Word> after(width * height);
    for (std::int64_t slice = first; slice < end; slice += file.x_dim * file.y_dim) {
        file.place = -1; // reading and writing are set apart by a seek
        seek(file, slice);
        file.place = -1;
        if (std::fread(before.data(), sizeof(Word), before.size(), file.stream) != before.size()) {
            return;
        }
        for (std::size_t x = 0; x < width; ++x) {
            for (std::size_t y = 0; y < height; ++y) {
                after[x * height + y] = before[y * width + x];
            }
        }
        seek(file, slice);
        file.place += static_cast<std::int64_t>(
            std::fwrite(after.data(), sizeof(Word), after.size(), file.stream));
    }
}

// Writes all frames as elements of type Raw.
template <class Raw, class Convert>
static void write_as(const NiftiImage &image, const AxisOrder &order, std::FILE *stream,
                     const Progress &progress, Convert convert)
{
    using Word = decltype(stored_word(Raw{}));
    const ImageHeader shape = stored_shape(image);
    RawFile<Word> file{.stream = stream, .axes = order.source, .x_dim = 0, .y_dim = 0};
    // A slab has few values that are neighbours along the last stored axis. Where that becomes x, it is
    // written as y first, and the slices are turned round in the file, unless they are too large for that.
    const std::int64_t slice =
        std::int64_t{image.size.at(order.source[0])} * image.size.at(order.source[1]);
    const bool turn = order.source[0] == 2 && slice <= SlabValues / 2;
    if (turn) {
        std::swap(file.axes[0], file.axes[1]);
    }
    file.x_dim = image.size.at(file.axes[0]);
    file.y_dim = image.size.at(file.axes[1]);
    const auto volume = static_cast<std::int64_t>(volume_values(image));
    std::vector<Word> slab(static_cast<std::size_t>(std::min<std::int64_t>(volume, SlabValues)));
    NiftiData data(image);
    for (std::int32_t frame = 1; frame <= image.frames; ++frame) {
        progress("converting", frame);
        const std::int64_t first = (frame - 1) * volume;
        for (std::int64_t piece = 0; piece < count_pieces(shape, SlabValues); ++piece) {
            write_slab<Raw>(image, data, volume_piece(shape, piece, SlabValues), file, first, slab,
                            convert);
        }
        if (turn) {
            transpose_slices(file, first, first + volume);
        }
        if (std::ferror(stream) != 0) {
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
