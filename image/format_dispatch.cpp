#include "image/format_dispatch.h"

#include "ecat/image_reader.h"
#include "image/raw_header.h"
#include "image/raw_reader.h"
#include "prefs/error_report.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace velmorant
{

static constexpr std::string_view EcatKeyword = "CTI6";
static constexpr std::array<std::string_view, 4> RawKeywords{"SHORTINT2B", "SHORTINT2L", "FLOATB",
                                                             "FLOATL"};

[[noreturn]] static void report_unsupported_format()
{
    print_error_message(1, "unspecified or unsupported file format");
}

void read_header(const char *header_name, ImageHeader &header, const char *keyword)
{
    if (keyword == EcatKeyword) {
        read_header_cti6(header_name, header);
        return;
    }
    if (std::ranges::find(RawKeywords, keyword) == RawKeywords.end()) {
        report_unsupported_format();
    }
    read_header_binary(header_name, header);
}

void read_image_planes(const char *image_name, float *buffer, const ImageHeader &header,
                       const ImageMatrix &selector, const char *keyword)
{
    if (keyword == EcatKeyword) {
        read_image_planes_cti6(image_name, buffer, header, selector);
        return;
    }
    switch (static_cast<StoredType>(header.data_format)) {
    case StoredType::SignedShort:
        return read_image_planes_binary(image_name, buffer, header, selector);
    case StoredType::UnsignedShort:
        return read_image_planes_binary_unsigned(image_name, buffer, header, selector);
    case StoredType::Float:
        return read_image_planes_binary_float(image_name, buffer, header, selector);
    }
    report_unsupported_format();
}

} // namespace velmorant
