#include "companions/raw_study.h"

#include "image/format_dispatch.h"
#include "image/image_geometry.h"
#include "prefs/file_handle.h"
#include "prefs/regular_file.h"

#include <algorithm>
#include <optional>

namespace velmorant
{

namespace
{

// How much of the data file there is, beside what its header says.
struct DataExtent {
    std::int64_t volume_bytes;
    std::int64_t promised; // volumes
    std::int64_t whole;    // volumes that are in the file
    std::int64_t rest;     // bytes after the last whole one
};

} // namespace

static const char *describe_elements(std::int32_t data_format)
{
    switch (static_cast<StoredType>(data_format)) {
    case StoredType::SignedShort:
        return "signed 16-bit integers";
    case StoredType::UnsignedShort:
        return "unsigned 16-bit integers";
    case StoredType::Float:
        return "32-bit floats";
    }
    return nullptr;
}

// The bytes of the data file after its offset; below 0 where it doesn't reach so far.
static std::int64_t data_bytes(const StudyReport &report, const ImageHeader &header)
{
    const FileHandle file = open_or_report(report.image, "rb");
    return file_size(file.get()) - header.data_offset;
}

static void report_storage(const StudyReport &report, const ImageHeader &header)
{
    std::fprintf(report.facts, "stored as: %s, %s-endian, from byte %d on\n",
                 describe_elements(header.data_format), header.byte_order == 1 ? "big" : "little",
                 header.data_offset);
    if (header.data_format != static_cast<std::int32_t>(StoredType::Float)) {
        std::fprintf(report.facts, "value of 32700: %g\n",
                     static_cast<double>(header.pixel_scaling));
    }
    std::fprintf(report.facts,
                 "right on left: %d\nanterior to posterior: %d\n"
                 "superior to inferior: %d\n",
                 header.right_on_left, header.anterior_to_posterior, header.superior_to_inferior);
}

// Whether the header describes volumes at all; says what it doesn't.
static bool check_header(StudyReport &report, const ImageHeader &header)
{
    const std::optional<std::string> fault = [&]() -> std::optional<std::string> {
        if (describe_elements(header.data_format) == nullptr) {
            return "unknown data format " + std::to_string(header.data_format);
        }
        if (header.data_offset < 0) {
            return "the data begin before the file";
        }
        if (image_size(header) == 0) {
            return "no pixels";
        }
        if (header.num_frames < 1 || header.num_beds < 0) {
            return "no volumes";
        }
        return std::nullopt;
    }();
    if (fault) {
        report_fault(report, *fault);
    }
    return !fault;
}

static DataExtent measure_data(const StudyReport &report, const ImageHeader &header)
{
    const auto element = stored_bytes(static_cast<StoredType>(header.data_format));
    const auto volume_bytes = static_cast<std::int64_t>(image_size(header) * element);
    const std::int64_t promised =
        std::int64_t{header.num_frames} * (std::int64_t{header.num_beds} + 1);
    const std::int64_t bytes = std::max(std::int64_t{0}, data_bytes(report, header));
    const std::int64_t whole = std::min(promised, bytes / volume_bytes);
    return {volume_bytes, promised, whole, bytes - whole * volume_bytes};
}

static void check_length(StudyReport &report, const ImageHeader &header, const DataExtent &data)
{
    if (data.whole == data.promised) {
        if (data.rest > 0) {
            std::fprintf(report.facts, "after the last volume: %lld bytes\n",
                         static_cast<long long>(data.rest));
        }
        return;
    }
    const auto frame = static_cast<std::int32_t>(data.whole % header.num_frames + 1);
    const auto bed = static_cast<std::int32_t>(data.whole / header.num_frames);
    report_fault(report, volume_name({frame, bed}) + " has " + std::to_string(data.rest) + " of " +
                             std::to_string(data.volume_bytes) +
                             " bytes; volumes missing after it: " +
                             std::to_string(data.promised - data.whole - 1));
}

void check_raw_study(StudyReport &report)
{
    ImageHeader header{};
    create_standard_image_header(header);
    read_header(report.image, header, report.keyword);
    check_image_geometry(header, report.image);
    report_geometry(report, header);
    if (!check_header(report, header)) {
        return;
    }
    report_storage(report, header);
    const DataExtent data = measure_data(report, header);
    for (std::int64_t volume = 0; volume < data.whole; ++volume) {
        const auto frame = static_cast<std::int32_t>(volume % header.num_frames + 1);
        const auto bed = static_cast<std::int32_t>(volume / header.num_frames);
        const ImageMatrix selector{.frame = frame, .plane = 1, .gate = 1, .data = 0, .bed = bed};
        StoredVolume stored = open_volume(report.image, header, selector, report.keyword);
        report_range(report, {frame, bed}, measure_volume(stored));
    }
    check_length(report, header, data);
}

} // namespace velmorant
