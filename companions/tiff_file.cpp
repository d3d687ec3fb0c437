#include "companions/tiff_file.h"

#include "prefs/regular_file.h"

#include <algorithm>
#include <span>

#include <sys/types.h>

namespace velmorant
{

namespace
{

using Bytes = std::vector<std::uint8_t>;

constexpr std::size_t HeaderBytes = 8;
constexpr std::size_t FieldBytes = 12;
constexpr std::size_t PlaceBytes = 4; // of a number that says where something is

// The file while it is read.
struct OpenTiff {
    std::FILE *stream;
    std::endian byte_order;
    TiffFile file;
};

} // namespace

// A number of 2 or 4 bytes.
static std::uint32_t number_from(std::span<const std::uint8_t> bytes, std::endian byte_order)
{
    std::uint32_t number = 0;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const std::uint8_t byte = bytes[byte_order == std::endian::big ? i : bytes.size() - 1 - i];
        number = number << 8U | byte;
    }
    return number;
}

static std::uint32_t number_at(const OpenTiff &tiff, std::span<const std::uint8_t> bytes,
                               std::size_t place, std::size_t length)
{
    return number_from(bytes.subspan(place, length), tiff.byte_order);
}

// Reads a stretch of the file, or throws that `what` is outside of it.
static Bytes read_extent(OpenTiff &tiff, std::uint64_t begin, std::uint64_t length,
                         const std::string &what)
{
    if (begin > tiff.file.size || length > tiff.file.size - begin) {
        throw FileFault{what + " is not in the file"};
    }
    Bytes bytes(length);
    if (fseeko(tiff.stream, static_cast<off_t>(begin), SEEK_SET) != 0 ||
        std::fread(bytes.data(), 1, bytes.size(), tiff.stream) != bytes.size()) {
        throw FileFault{"can't be read"};
    }
    tiff.file.extents.push_back({begin, begin + length});
    return bytes;
}

static std::size_t value_bytes(std::uint32_t type, const std::string &name)
{
    switch (static_cast<TiffType>(type)) {
    case TiffType::Text:
        return 1;
    case TiffType::Short:
        return 2;
    case TiffType::Long:
        return 4;
    case TiffType::Fraction:
        return 8;
    }
    throw FileFault{name + " is of type " + std::to_string(type)};
}

static std::string text_from(const Bytes &values, const std::string &name)
{
    if (values.empty() || values.back() != 0) {
        throw FileFault{name + " is a text without an end"};
    }
    return {values.begin(), values.end() - 1};
}

static TiffField read_field(OpenTiff &tiff, std::span<const std::uint8_t> entry,
                            std::size_t most_values)
{
    const std::uint32_t type = number_at(tiff, entry, 2, 2);
    TiffField field{.tag = static_cast<std::uint16_t>(number_at(tiff, entry, 0, 2)),
                    .type = static_cast<TiffType>(type),
                    .numbers = {},
                    .text = {}};
    const std::string name = "field " + std::to_string(field.tag);
    const std::uint32_t count = number_at(tiff, entry, 4, 4);
    if (count > most_values) {
        throw FileFault{name + " has " + std::to_string(count) + " values"};
    }
    const std::size_t length = count * value_bytes(type, name);
    const std::span<const std::uint8_t> place = entry.subspan(8, PlaceBytes);
    Bytes values(place.begin(), place.end());
    if (length > PlaceBytes) {
        values = read_extent(tiff, number_from(place, tiff.byte_order), length, name);
    } else if (std::any_of(place.begin() + static_cast<std::ptrdiff_t>(length), place.end(),
                           [](std::uint8_t byte) { return byte != 0; })) {
        throw FileFault{name + " has more bytes than values"};
    }
    values.resize(length);
    if (field.type == TiffType::Text) {
        field.text = text_from(values, name);
        return field;
    }
    const std::size_t number_bytes = field.type == TiffType::Short ? 2 : 4;
    for (std::size_t i = 0; i < values.size(); i += number_bytes) {
        field.numbers.push_back(number_at(tiff, values, i, number_bytes));
    }
    return field;
}

static void read_directory(OpenTiff &tiff, std::uint32_t place, std::size_t most_fields,
                           std::size_t most_values)
{
    const std::string name = "the directory";
    if (place == 0) { // as in a file that wasn't written to its end
        throw FileFault{"there is no directory"};
    }
    const std::uint32_t count = number_from(read_extent(tiff, place, 2, name), tiff.byte_order);
    if (count > most_fields) {
        throw FileFault{name + " has " + std::to_string(count) + " fields"};
    }
    const Bytes entries =
        read_extent(tiff, std::uint64_t{place} + 2, count * FieldBytes + PlaceBytes, name);
    if (number_at(tiff, entries, count * FieldBytes, PlaceBytes) != 0) {
        throw FileFault{"there is a second directory"};
    }
    for (std::size_t i = 0; i < count; ++i) {
        tiff.file.fields.push_back(
            read_field(tiff, std::span(entries).subspan(i * FieldBytes, FieldBytes), most_values));
    }
}

TiffFile read_tiff_file(const char *path, std::size_t most_fields, std::size_t most_values)
{
    if (is_special(path)) {
        throw FileFault{"not a regular file"};
    }
    const FileHandle stream(std::fopen(path, "rb"));
    if (!stream) {
        throw FileFault{"can't be opened"};
    }
    OpenTiff tiff{.stream = stream.get(), .byte_order = std::endian::little, .file = {}};
    tiff.file.size = static_cast<std::uint64_t>(file_size(tiff.stream));
    const Bytes header = read_extent(tiff, 0, HeaderBytes, "a TIFF file's header");
    const std::string start(header.begin(), header.begin() + 2);
    tiff.byte_order = start == "MM" ? std::endian::big : std::endian::little;
    if ((start != "II" && start != "MM") || number_at(tiff, header, 2, 2) != 42) {
        throw FileFault{"not a TIFF file"};
    }
    read_directory(tiff, number_at(tiff, header, 4, PlaceBytes), most_fields, most_values);
    return tiff.file;
}

} // namespace velmorant
