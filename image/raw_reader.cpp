#include "image/raw_reader.h"

#include "image/decode_pixels.h"
#include "image/file_piece.h"
#include "image/flip_image.h"
#include "image/image_geometry.h"
#include "image/raw_header.h"
#include "prefs/error_report.h"
#include "prefs/file_handle.h"

#include <algorithm>
#include <span>
#include <string>

#include <sys/types.h>

namespace velmorant
{

static_assert(sizeof(off_t) == 8, "volumes may begin beyond 2 GiB");

// Moves the file to the first byte of the selected volume.
static void seek_volume(std::FILE *file, const char *image_name, const ImageHeader &header,
                        const ImageMatrix &selector, std::size_t volume_bytes)
{
    // At most 2^62 + 2^31 volumes of up to 2^33 bytes: the index fits 64 bits, the offset may not.
    const std::int64_t index =
        std::int64_t{header.num_frames} * selector.bed + (std::int64_t{selector.frame} - 1);
    std::int64_t offset = 0;
    const bool overflow =
        __builtin_mul_overflow(index, static_cast<std::int64_t>(volume_bytes), &offset) ||
        __builtin_add_overflow(offset, std::int64_t{header.data_offset}, &offset);
    if (overflow || offset < 0 || fseeko(file, offset, SEEK_SET) != 0) {
        const std::string volume = "(frame " + std::to_string(selector.frame) + ", bed " +
                                   std::to_string(selector.bed) + ") in ";
        print_error_message(3, "illegal volume ", volume.c_str(), image_name);
    }
}

// Fills the pixels from the file piece by piece, and with zeros after its last whole element.
static void read_pixels(std::FILE *file, const char *image_name, std::span<float> pixels,
                        StoredType type, std::endian byte_order, float factor)
{
    const std::size_t element = stored_bytes(type);
    const Block<unsigned char> piece = allocate_file_piece(pixels.size() * element);
    while (!pixels.empty()) {
        const std::size_t wanted = std::min<std::size_t>(pixels.size(), PieceBytes / element);
        const std::size_t got = std::fread(piece.get(), element, wanted, file);
        decode_pixels(type, byte_order, piece.get(), pixels.data(), got, factor);
        pixels = pixels.subspan(got);
        if (got < wanted) {
            break;
        }
    }
    if (std::ferror(file) != 0) {
        print_error_message(2, "can't read ", image_name);
    }
    std::fill(pixels.begin(), pixels.end(), 0.0F);
}

static void read_volume(const char *image_name, float *buffer, const ImageHeader &header,
                        const ImageMatrix &selector, StoredType type)
{
    const FileHandle file = open_or_report(image_name, "rb");
    // Large reads go past the stream's own buffer; reading ahead into it would be work for nothing.
    std::setvbuf(file.get(), nullptr, _IONBF, 0);
    const std::span pixels(buffer, checked_image_size(header));
    seek_volume(file.get(), image_name, header, selector, pixels.size() * stored_bytes(type));

    if (!pixels.empty()) {
        check_byte_order(header);
    }
    read_pixels(file.get(), image_name, pixels, type,
                header.byte_order == 1 ? std::endian::big : std::endian::little,
                header.pixel_scaling / 32700.0F);
    flip_image(buffer, header, header.right_on_left, header.anterior_to_posterior,
               header.superior_to_inferior);
}

void read_image_planes_binary(const char *image_name, float *buffer, const ImageHeader &header,
                              const ImageMatrix &selector)
{
    read_volume(image_name, buffer, header, selector, StoredType::SignedShort);
}

void read_image_planes_binary_unsigned(const char *image_name, float *buffer,
                                       const ImageHeader &header, const ImageMatrix &selector)
{
    read_volume(image_name, buffer, header, selector, StoredType::UnsignedShort);
}

void read_image_planes_binary_float(const char *image_name, float *buffer,
                                    const ImageHeader &header, const ImageMatrix &selector)
{
    read_volume(image_name, buffer, header, selector, StoredType::Float);
}

} // namespace velmorant
