#include "image/raw_writer.h"
#include "image/image_geometry.h"

#include "image/byte_order.h"
#include "image/file_piece.h"
#include "image/flip_image.h"
#include "image/raw_header.h"
#include "image/short_scaling.h"
#include "prefs/error_report.h"
#include "prefs/file_handle.h"

#include <algorithm>
#include <span>
#include <utility>

namespace velmorant
{

namespace
{

// What becomes of pixels on their way into a file.
struct Encoding {
    StoredType type;
    ShortScaling scaling;
    float threshold;
    float replacement;
};

} // namespace

static float replace_below(float threshold, float replacement, float pixel)
{
    return threshold > pixel ? replacement : pixel;
}

template <std::endian Order>
static void encode_floats(std::span<const float> pixels, const Encoding &encoding,
                          std::uint8_t *bytes)
{
    const float threshold = encoding.threshold;
    const float replacement = encoding.replacement;
    for (std::size_t i = 0; i < pixels.size(); ++i) {
        const float value = replace_below(threshold, replacement, pixels[i]);
        store_word<Order>(bytes + i * sizeof(float), std::bit_cast<std::uint32_t>(value));
    }
}

// Returns whether a value overflowed.
template <std::endian Order>
static bool encode_shorts(std::span<const float> pixels, const Encoding &encoding,
                          std::uint8_t *bytes)
{
    bool overflow = false;
    for (std::size_t i = 0; i < pixels.size(); ++i) {
        const float value = replace_below(encoding.threshold, encoding.replacement, pixels[i]);
        StoredShort stored = quantise(value, encoding.scaling.step);
        if (stored.overflow) {
            std::printf("sval %f; fval %f; quant %f\n", static_cast<double>(value),
                        static_cast<double>(encoding.scaling.stated),
                        static_cast<double>(stored.quantised));
            stored.quantised = 0;
            overflow = true;
        }
        store_word<Order>(bytes + i * sizeof(std::int16_t),
                          static_cast<std::uint16_t>(stored.quantised));
    }
    return overflow;
}

template <std::endian Order>
static bool encode(std::span<const float> pixels, const Encoding &encoding, std::uint8_t *bytes)
{
    if (encoding.type == StoredType::Float) {
        encode_floats<Order>(pixels, encoding, bytes);
        return false;
    }
    return encode_shorts<Order>(pixels, encoding, bytes);
}

static void write_zeros(std::FILE *file, std::int32_t count)
{
    for (std::int32_t i = 0; i < count; ++i) {
        std::putc(0, file);
    }
}

// Writes the data file: the offset's zeros and then the pixels, which are in the file's
// orientation.
static void write_data(const char *image_name, std::span<const float> pixels,
                       const ImageHeader &header, const Encoding &encoding)
{
    FileHandle file = open_or_report(image_name, "wb");
    write_zeros(file.get(), header.data_offset);
    const std::size_t element_bytes = encoding.type == StoredType::Float ? 4 : 2;
    const Block<unsigned char> bytes = allocate_file_piece();
    bool overflow = false;
    while (!pixels.empty()) {
        const auto piece =
            pixels.first(std::min<std::size_t>(pixels.size(), PieceBytes / element_bytes));
        overflow |= header.byte_order == 1
                        ? encode<std::endian::big>(piece, encoding, bytes.get())
                        : encode<std::endian::little>(piece, encoding, bytes.get());
        std::fwrite(bytes.get(), element_bytes, piece.size(), file.get());
        pixels = pixels.subspan(piece.size());
    }
    close_written(std::move(file), image_name);
    if (overflow) {
        std::puts("*** overflow pixel values (Signed Short Integers) set to 0 ***");
    }
}

// Writes both files of an image. stated: what the text header says, but for the scaling. extent:
// the header that tells how many volumes the buffer holds, and the offset of the data.
static void write_files(const char *image_name, float *buffer, ImageHeader stated,
                        const ImageHeader &extent, const Encoding &encoding)
{
    const std::size_t size = checked_volume_count(extent) * checked_image_size(extent);
    stated.pixel_scaling = encoding.scaling.stated;
    write_text_header(image_name, stated, encoding.type, HeaderEnd::BeforeData);

    const auto turn = [&] {
        flip_image_multiframe(buffer, extent, extent.right_on_left, extent.anterior_to_posterior,
                              extent.superior_to_inferior);
    };
    turn();
    write_data(image_name, {buffer, size}, extent, encoding);
    turn();
}

static Encoding float_encoding(float threshold, float replacement)
{
    return {.type = StoredType::Float,
            .scaling = {.step = 1.0F, .stated = 32700.0F},
            .threshold = threshold,
            .replacement = replacement};
}

// The encoding of all volumes of `extent` as signed 16-bit integers, scaled by their common
// extreme.
static Encoding short_encoding(const float *buffer, const ImageHeader &extent,
                               const FormatSetting &settings, float threshold, float replacement)
{
    const std::size_t volumes = checked_volume_count(extent);
    const float extreme = find_pix_max(buffer, checked_image_size(extent), volumes, threshold);
    return {.type = StoredType::SignedShort,
            .scaling = choose_short_scaling(extreme, settings.quantisation),
            .threshold = threshold,
            .replacement = replacement};
}

// The same image with a single frame and bed.
static ImageHeader one_volume(ImageHeader header)
{
    header.num_frames = 1;
    header.num_beds = 0;
    return header;
}

static ImageHeader without_offset(ImageHeader header)
{
    header.data_offset = 0;
    return header;
}

static void write_header_only(const char *image_name, ImageHeader header, const Encoding &encoding)
{
    header.pixel_scaling = encoding.scaling.stated;
    write_text_header(image_name, header, encoding.type, HeaderEnd::HeaderOnly);
}

void write_image_header_binary(const char *image_name, const float *buffer,
                               const ImageHeader &header, const FormatSetting &settings,
                               float threshold)
{
    write_header_only(image_name, header,
                      short_encoding(buffer, one_volume(header), settings, threshold, 0.0F));
}

void write_image_header_binary_float(const char *image_name, const float * /*buffer*/,
                                     const ImageHeader &header, const FormatSetting & /*settings*/)
{
    write_header_only(image_name, header, float_encoding(0.0F, 0.0F));
}

void write_image_matrix_binary(const char *image_name, float *buffer, const ImageHeader &header,
                               const FormatSetting &settings, float threshold, float replacement)
{
    const ImageHeader extent = one_volume(header);
    write_files(image_name, buffer, header, extent,
                short_encoding(buffer, extent, settings, threshold, replacement));
}

void write_image_matrix_binary_float(const char *image_name, float *buffer,
                                     const ImageHeader &header, const FormatSetting & /*settings*/,
                                     float threshold, float replacement)
{
    write_files(image_name, buffer, header, one_volume(header),
                float_encoding(threshold, replacement));
}

void write_image_matrix_binary_multiple(const char *image_name, float *buffer,
                                        const ImageHeader &header, const FormatSetting &settings,
                                        float threshold, float replacement)
{
    write_files(image_name, buffer, without_offset(header), header,
                short_encoding(buffer, header, settings, threshold, replacement));
}

void write_image_matrix_binary_multiple_float(const char *image_name, float *buffer,
                                              const ImageHeader &header,
                                              const FormatSetting & /*settings*/, float threshold,
                                              float replacement)
{
    write_files(image_name, buffer, without_offset(header), header,
                float_encoding(threshold, replacement));
}

} // namespace velmorant
