#include "image/raw_reader.h"

#include "image/flip_image.h"
#include "image/image_geometry.h"
#include "image/raw_header.h"
#include "prefs/error_report.h"
#include "prefs/regular_file.h"

#include <algorithm>
#include <string>

#include <sys/types.h>

namespace velmorant
{

// Moves the file to the first byte of the selected volume. Returns its offset.
static std::int64_t seek_volume(std::FILE *file, const char *image_name, const ImageHeader &header,
                                const ImageMatrix &selector, std::int64_t volume_bytes)
{
    // At most 2^62 + 2^31 volumes of up to 2^33 bytes: the index fits 64 bits, the offset may not.
    const std::int64_t index =
        std::int64_t{header.num_frames} * selector.bed + (std::int64_t{selector.frame} - 1);
    std::int64_t offset = 0;
    const bool overflow = __builtin_mul_overflow(index, volume_bytes, &offset) ||
                          __builtin_add_overflow(offset, std::int64_t{header.data_offset}, &offset);
    if (overflow || offset < 0 || fseeko(file, offset, SEEK_SET) != 0) {
        const std::string volume = "(frame " + std::to_string(selector.frame) + ", bed " +
                                   std::to_string(selector.bed) + ") in ";
        print_error_message(3, "illegal volume ", volume.c_str(), image_name);
    }
    return offset;
}

// Ends the run where not even a byte of the pixels can be read: the file is a folder, say.
static void check_readable(StoredVolume &volume)
{
    std::FILE *file = volume.file.get();
    const bool missing =
        volume.parts.front().elements > 0 && std::fread(volume.buffer.get(), 1, 1, file) == 0;
    if (missing && std::ferror(file) != 0) {
        print_error_message(2, "can't read ", volume.name.c_str());
    }
}

StoredVolume open_raw_volume(const char *image_name, const ImageHeader &header,
                             const ImageMatrix &selector, StoredType type)
{
    StoredVolume volume{};
    volume.file = open_or_report(image_name, "rb");
    std::FILE *file = volume.file.get();
    // Large reads go past the stream's own buffer; reading ahead into it would be work for nothing.
    std::setvbuf(file, nullptr, _IONBF, 0);
    const auto pixels = static_cast<std::int64_t>(checked_image_size(header));
    const auto element = static_cast<std::int64_t>(stored_bytes(type));
    const std::int64_t offset = seek_volume(file, image_name, header, selector, pixels * element);
    if (pixels > 0) {
        check_byte_order(header);
    }
    check_flags(header.right_on_left, header.anterior_to_posterior, header.superior_to_inferior);

    volume.name = image_name;
    volume.header = header;
    volume.type = type;
    volume.byte_order = header.byte_order == 1 ? std::endian::big : std::endian::little;
    volume.part_pixels = pixels;
    const std::int64_t in_file = std::max<std::int64_t>(bytes_to_read(file) - offset, 0) / element;
    volume.parts = {{.offset = offset,
                     .elements = std::min(pixels, in_file),
                     .factor = header.pixel_scaling / 32700.0F,
                     .rest = 0.0F}};
    volume.buffer =
        allocate_read_buffer(static_cast<std::uint64_t>(pixels * element), "file piece");
    check_readable(volume);
    return volume;
}

static void read_volume(const char *image_name, float *buffer, const ImageHeader &header,
                        const ImageMatrix &selector, StoredType type)
{
    StoredVolume volume = open_raw_volume(image_name, header, selector, type);
    read_box(volume, whole_volume(header), buffer);
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
