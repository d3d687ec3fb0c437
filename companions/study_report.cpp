#include "companions/study_report.h"

#include "image/allocate.h"
#include "image/format_dispatch.h"
#include "image/image_geometry.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <span>

namespace velmorant
{

namespace
{

struct ValueRange {
    float smallest;
    float largest;
    std::size_t not_numbers;
};

} // namespace

void report_fault(StudyReport &report, const std::string &fault)
{
    std::fprintf(report.faults, "tiffgen-check: %s: %s\n", report.image, fault.c_str());
    report.whole = false;
}

std::string volume_name(std::int32_t frame, std::int32_t bed)
{
    return "frame " + std::to_string(frame) + ", bed " + std::to_string(bed);
}

void report_geometry(const StudyReport &report, const ImageHeader &header)
{
    std::fprintf(report.facts, "format: %s\n", report.keyword);
    std::fprintf(report.facts, "size: %d x %d x %d pixels\n", header.x_dim, header.y_dim,
                 header.num_slices);
    std::fprintf(report.facts, "pixel size: %g x %g x %g mm\n",
                 static_cast<double>(header.pixel_size_x), static_cast<double>(header.pixel_size_y),
                 static_cast<double>(header.slice_thickness));
    std::fprintf(report.facts, "frames: 1 to %d\nbeds: 0 to %d\n", header.num_frames,
                 header.num_beds);
}

static ValueRange measure_values(std::span<const float> values)
{
    constexpr float Infinity = std::numeric_limits<float>::infinity();
    ValueRange range{.smallest = Infinity, .largest = -Infinity, .not_numbers = 0};
    for (const float value : values) {
        if (std::isnan(value)) {
            ++range.not_numbers;
        } else {
            range.smallest = std::min(range.smallest, value);
            range.largest = std::max(range.largest, value);
        }
    }
    return range;
}

void report_values(const StudyReport &report, const ImageHeader &header, std::int32_t frame,
                   std::int32_t bed)
{
    const std::size_t size = image_size(header);
    const Block<float> volume(allocate_float(static_cast<std::int32_t>(size), "volume"));
    const ImageMatrix selector{.frame = frame, .plane = 1, .gate = 1, .data = 0, .bed = bed};
    read_image_planes(report.image, volume.get(), header, selector, report.keyword);
    const ValueRange range = measure_values({volume.get(), size});
    std::fprintf(report.facts, "%s: ", volume_name(frame, bed).c_str());
    if (range.not_numbers == size) {
        std::fputs("no numbers\n", report.facts);
        return;
    }
    std::fprintf(report.facts, "%g to %g", static_cast<double>(range.smallest),
                 static_cast<double>(range.largest));
    if (range.not_numbers > 0) {
        std::fprintf(report.facts, ", and %zu pixels that are not numbers", range.not_numbers);
    }
    std::fputs("\n", report.facts);
}

} // namespace velmorant
