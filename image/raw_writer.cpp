#include "image/raw_writer.h"

#include "image/allocate.h"
#include "image/byte_order.h"
#include "image/cutoff.h"
#include "image/flip_image.h"
#include "image/image_geometry.h"
#include "image/raw_header.h"
#include "image/short_scaling.h"
#include "prefs/error_report.h"
#include "prefs/file_handle.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstdio>
#include <span>
#include <utility>

namespace velmorant
{

// Bytes that are encoded and written at a time: few enough to be in the cache still when they are
// written.
static constexpr std::int32_t PieceBytes = 131072;

namespace
{

// What happens to a value that overflows, beside being counted.
enum class Overflow { Listed, Silent };

// What becomes of pixels on their way into a file.
struct Encoding {
    StoredType type;
    ShortScaling scaling;
    Cutoff cutoff;
    Overflow overflow;
};

} // namespace

template <std::endian Order>
static void encode_floats(std::span<const float> pixels, const Encoding &encoding,
                          std::uint8_t *bytes)
{
    const Cutoff cutoff = encoding.cutoff;
    for (std::size_t i = 0; i < pixels.size(); ++i) {
        const float value = apply_cutoff(cutoff, pixels[i]);
        store_word<Order>(bytes + i * sizeof(float), std::bit_cast<std::uint32_t>(value));
    }
}

static void list_overflow(float value, const Encoding &encoding, std::int32_t quantised)
{
    std::printf("sval %f; fval %f; quant %f\n", static_cast<double>(value),
                static_cast<double>(encoding.scaling.stated), static_cast<double>(quantised));
}

// Returns whether a value overflowed.
template <std::endian Order>
static bool encode_shorts(std::span<const float> pixels, const Encoding &encoding,
                          std::uint8_t *bytes)
{
    bool overflow = false;
    for (std::size_t i = 0; i < pixels.size(); ++i) {
        const float value = apply_cutoff(encoding.cutoff, pixels[i]);
        StoredShort stored = quantise(value, encoding.scaling.step);
        if (stored.overflow) {
            if (encoding.overflow == Overflow::Listed) {
                list_overflow(value, encoding, stored.quantised);
            }
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

// Writes `count` zero bytes. zeros: PieceBytes of them.
static void write_zeros(std::FILE *file, std::int32_t count, const unsigned char *zeros)
{
    while (count > 0) {
        const std::int32_t piece = std::min(count, PieceBytes);
        std::fwrite(zeros, 1, static_cast<std::size_t>(piece), file);
        count -= piece;
    }
}

// Writes the data file: the offset's zeros and then the pixels, which are in the file's
// orientation.
static void write_data(const char *image_name, std::span<const float> pixels,
                       const ImageHeader &header, const Encoding &encoding)
{
    FileHandle file = open_or_report(image_name, "wb");
    const Block<unsigned char> bytes(allocate_unsigned_char_zero(PieceBytes, "file piece"));
    write_zeros(file.get(), header.data_offset, bytes.get());
    if (!pixels.empty()) {
        check_byte_order(header);
    }
    const std::size_t element_bytes = stored_bytes(encoding.type);
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

// The pixels of all volumes of `extent`.
static std::span<float> volumes_in(float *buffer, const ImageHeader &extent)
{
    return {buffer, static_cast<std::size_t>(checked_study_size(extent))};
}

// Writes the data file from pixels in the standard orientation.
static void write_turned_data(const char *image_name, std::span<float> pixels,
                              const ImageHeader &extent, const Encoding &encoding)
{
    const auto turn = [&] {
        flip_image_multiframe(pixels.data(), extent, extent.right_on_left,
                              extent.anterior_to_posterior, extent.superior_to_inferior);
    };
    turn();
    write_data(image_name, pixels, extent, encoding);
    turn();
}

// Writes both files of an image. stated: what the text header says, but for the scaling. extent:
// the header that tells how many volumes the buffer holds, and the offset of the data.
static void write_files(const char *image_name, float *buffer, ImageHeader stated,
                        const ImageHeader &extent, const Encoding &encoding)
{
    const std::span<float> pixels = volumes_in(buffer, extent);
    stated.pixel_scaling = encoding.scaling.stated;
    write_text_header(image_name, stated, encoding.type, HeaderEnd::BeforeData);
    write_turned_data(image_name, pixels, extent, encoding);
}

static Encoding float_encoding(const Cutoff &cutoff)
{
    return {.type = StoredType::Float,
            .scaling = {.step = 1.0F, .stated = 32700.0F},
            .cutoff = cutoff,
            .overflow = Overflow::Listed};
}

// The encoding of all volumes of `extent` as signed 16-bit integers, scaled by their common
// extreme.
static Encoding short_encoding(const float *buffer, const ImageHeader &extent,
                               const FormatSetting &settings, const Cutoff &cutoff)
{
    const std::size_t volumes = checked_volume_count(extent);
    const float extreme =
        find_pix_max(buffer, checked_image_size(extent), volumes, cutoff.threshold);
    return {.type = StoredType::SignedShort,
            .scaling = choose_short_scaling(extreme, settings.quantisation),
            .cutoff = cutoff,
            .overflow = Overflow::Listed};
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
                      short_encoding(buffer, one_volume(header), settings, {threshold, 0.0F}));
}

void write_image_header_binary_float(const char *image_name, const float * /*buffer*/,
                                     const ImageHeader &header, const FormatSetting & /*settings*/)
{
    write_header_only(image_name, header, float_encoding({}));
}

void write_image_matrix_binary(const char *image_name, float *buffer, const ImageHeader &header,
                               const FormatSetting &settings, float threshold, float replacement)
{
    const ImageHeader extent = one_volume(header);
    write_files(image_name, buffer, header, extent,
                short_encoding(buffer, extent, settings, {threshold, replacement}));
}

void write_image_matrix_binary_float(const char *image_name, float *buffer,
                                     const ImageHeader &header, const FormatSetting & /*settings*/,
                                     float threshold, float replacement)
{
    write_files(image_name, buffer, header, one_volume(header),
                float_encoding({threshold, replacement}));
}

void write_image_matrix_binary_multiple(const char *image_name, float *buffer,
                                        const ImageHeader &header, const FormatSetting &settings,
                                        float threshold, float replacement)
{
    write_files(image_name, buffer, without_offset(header), header,
                short_encoding(buffer, header, settings, {threshold, replacement}));
}

void write_image_matrix_binary_multiple_float(const char *image_name, float *buffer,
                                              const ImageHeader &header,
                                              const FormatSetting & /*settings*/, float threshold,
                                              float replacement)
{
    write_files(image_name, buffer, without_offset(header), header,
                float_encoding({threshold, replacement}));
}

float write_image_matrix_wo_header_binary(const char *image_name, float *buffer,
                                          const ImageHeader &header, const FormatSetting &settings,
                                          float threshold, float replacement)
{
    const ImageHeader extent = one_volume(header);
    Encoding encoding = short_encoding(buffer, extent, settings, {threshold, replacement});
    encoding.overflow = Overflow::Silent;
    write_turned_data(image_name, volumes_in(buffer, extent), extent, encoding);
    return encoding.scaling.step;
}

void write_image_matrix_wo_header_binary_float(const char *image_name, float *buffer,
                                               const ImageHeader &header,
                                               const FormatSetting & /*settings*/, float threshold,
                                               float replacement)
{
    const ImageHeader extent = one_volume(header);
    write_turned_data(image_name, volumes_in(buffer, extent), extent,
                      float_encoding({threshold, replacement}));
}

} // namespace velmorant
