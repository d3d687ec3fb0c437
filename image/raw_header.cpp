#include "image/raw_header.h"

#include "prefs/error_report.h"
#include "prefs/file_handle.h"
#include "prefs/numbers.h"
#include "prefs/text_file.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>
#include <variant>

namespace velmorant
{

namespace
{

// What a line says: a field of the header, or something that takes a word of its own.
enum class WrittenWord { ByteOrder, NumberFormat, BytesPerPixel };
using HeaderValue = std::variant<std::int32_t ImageHeader::*, float ImageHeader::*, WrittenWord>;

struct HeaderRow {
    const char *key;     // what a line is searched for; null in lines that no reader looks at
    std::size_t line;    // place in a written header, from 1
    const char *written; // the line up to its value
    HeaderValue value;
};

} // namespace

// In the order in which a line is tested for the keys; those that are not read stand at the end.
// The blanks before ":=" are part of the format.
// clang-format off
static constexpr std::array HeaderRows{
    //         READ BY THE KEY                LINE  WRITTEN AS                           VALUE
    HeaderRow{"matrix size [1]",                 3, "!matrix size [1] :=",               &ImageHeader::x_dim},
    HeaderRow{"matrix size [2]",                 4, "!matrix size [2] :=",               &ImageHeader::y_dim},
    HeaderRow{"number of slices",               11, "!number of slices :=",              &ImageHeader::num_slices},
    HeaderRow{"scaling factor (mm/pixel) [1]",   8, "scaling factor (mm/pixel) [1] :=",  &ImageHeader::pixel_size_x},
    HeaderRow{"scaling factor (mm/pixel) [2]",   9, "scaling factor (mm/pixel) [2] :=",  &ImageHeader::pixel_size_y},
    HeaderRow{"slice thickness (mm/pixel)",     12, "!slice thickness (mm/pixel) :=",    &ImageHeader::slice_thickness},
    HeaderRow{"!the right brain on the left",   13, "!the right brain on the left   :=", &ImageHeader::right_on_left},
    HeaderRow{"!the anterior to the posterior", 14, "!the anterior to the posterior :=", &ImageHeader::anterior_to_posterior},
    HeaderRow{"!the superior to the inferior",  15, "!the superior to the inferior  :=", &ImageHeader::superior_to_inferior},
    HeaderRow{"!pixel scaling value",           10, "!pixel scaling value :=",           &ImageHeader::pixel_scaling},
    HeaderRow{"!data offset in bytes",           1, "!data offset in bytes :=",          &ImageHeader::data_offset},
    HeaderRow{"!imagedata byte order",           2, "!imagedata byte order :=",          WrittenWord::ByteOrder},
    HeaderRow{"!data format",                    5, "!data format :=",                   &ImageHeader::data_format},
    HeaderRow{"number of frames",               16, "number of frames :=",               &ImageHeader::num_frames},
    HeaderRow{"number of beds",                 17, "number of beds   :=",               &ImageHeader::num_beds},
    HeaderRow{nullptr,                           6, "!number format :=",                 WrittenWord::NumberFormat},
    HeaderRow{nullptr,                           7, "!number of bytes per pixel :=",     WrittenWord::BytesPerPixel},
};
// clang-format on

// The row of each written line, in the order of the lines.
static constexpr auto WrittenRows = [] {
    std::array<const HeaderRow *, HeaderRows.size()> rows{};
    for (const HeaderRow &row : HeaderRows) {
        rows.at(row.line - 1) = &row;
    }
    return rows;
}();
static_assert(std::ranges::find(WrittenRows, nullptr) == WrittenRows.end(), "a line without a row");

static constexpr std::size_t LongestHeaderName = 199;

std::string header_file_name(const char *image_name)
{
    std::string name(image_name);
    name.resize(std::min(name.rfind('.'), name.size()));
    name += ".hdr";
    if (name.size() > LongestHeaderName) {
        print_error_message(2, "header file name too long: ", name.c_str());
    }
    return name;
}

[[noreturn]] static void report_byte_order()
{
    print_error_message(1, "unspecified byte order in the header");
}

void check_byte_order(const ImageHeader &header)
{
    if (header.byte_order != 0 && header.byte_order != 1) {
        report_byte_order();
    }
}

static std::int32_t read_byte_order(const char *line)
{
    if (test_strings(line, "BIGENDIAN")) {
        return 1;
    }
    if (test_strings(line, "LITTLEENDIAN")) {
        return 0;
    }
    report_byte_order();
}

static void read_value(const char *line, std::int32_t ImageHeader::*field, ImageHeader &header)
{
    header.*field = get_int_strings(line);
}

static void read_value(const char *line, float ImageHeader::*field, ImageHeader &header)
{
    header.*field = get_float_strings(line);
}

static void read_value(const char *line, WrittenWord word, ImageHeader &header)
{
    if (word == WrittenWord::ByteOrder) {
        header.byte_order = read_byte_order(line);
    }
}

static void read_line(const char *line, ImageHeader &header)
{
    for (const HeaderRow &row : HeaderRows) {
        if (row.key != nullptr && test_strings(line, row.key)) {
            std::visit([&](auto value) { read_value(line, value, header); }, row.value);
        }
    }
}

void read_header_binary(const char *header_name, ImageHeader &header)
{
    const std::string name = header_file_name(header_name);
    TextFile file(name.c_str());
    header.num_frames = 1;
    header.num_gates = 1;
    header.num_beds = 0;
    header.num_data = 0;
    header.data_format = 1;
    Line line{};
    while (file.read_line(line) && !test_strings(line.data(), "end of header")) {
        read_line(line.data(), header);
    }
    if (std::fabs(static_cast<double>(header.pixel_scaling)) <= 1e-20) {
        print_error_message(2, "'pixel scaling value' not defined in ", name.c_str());
    }
}

static std::string value_text(std::int32_t ImageHeader::*field, const ImageHeader &header,
                              StoredType /*type*/)
{
    return std::to_string(header.*field);
}

static std::string value_text(float ImageHeader::*field, const ImageHeader &header,
                              StoredType /*type*/)
{
    return decimal_text(header.*field);
}

static std::string value_text(WrittenWord word, const ImageHeader &header, StoredType type)
{
    const bool is_float = type == StoredType::Float;
    switch (word) {
    case WrittenWord::ByteOrder:
        check_byte_order(header);
        return header.byte_order == 1 ? "BIGENDIAN" : "LITTLEENDIAN";
    case WrittenWord::NumberFormat:
        return is_float ? "floating point" : "signed integer";
    case WrittenWord::BytesPerPixel:
        return is_float ? "4" : "2";
    }
    return "";
}

void print_text_header(std::FILE *file, const ImageHeader &header, StoredType type, HeaderEnd end)
{
    for (const HeaderRow *row : WrittenRows) {
        const std::string value =
            std::visit([&](auto source) { return value_text(source, header, type); }, row->value);
        std::fprintf(file, "%s%s\n", row->written, value.c_str());
    }
    std::fputs(end == HeaderEnd::BeforeData ? "!END OF HEADER:=\n" : "!END OF INTERFILE :=\n",
               file);
}

void write_text_header(const char *image_name, const ImageHeader &header, StoredType type,
                       HeaderEnd end)
{
    const std::string name = header_file_name(image_name);
    FileHandle file = open_or_report(name.c_str(), "w");
    print_text_header(file.get(), header, type, end);
    close_written(std::move(file), name.c_str());
}

} // namespace velmorant
