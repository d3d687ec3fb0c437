#include "companions/study_report.h"

#include "image/image_geometry.h"
#include "image/volume_box.h"

#include <algorithm>
#include <cmath>
#include <span>
#include <vector>

namespace velmorant
{

void report_fault(StudyReport &report, const std::string &fault)
{
    std::fprintf(report.faults, "tiffgen-check: %s: %s\n", report.image, fault.c_str());
    report.whole = false;
}

std::string volume_name(const Volume &volume)
{
    return "frame " + std::to_string(volume.frame) + ", bed " + std::to_string(volume.bed);
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

// The range with more values. A NaN is neither smaller nor larger than any.
static ValueRange widen(ValueRange range, std::span<const float> values)
{
    auto [smallest, largest, not_numbers] = range;
    for (const float value : values) {
        smallest = value < smallest ? value : smallest;
        largest = value > largest ? value : largest;
        not_numbers += std::isnan(value) ? 1U : 0U;
    }
    return {smallest, largest, not_numbers};
}

ValueRange measure_volume(StoredVolume &volume)
{
    ValueRange range;
    std::vector<float> pixels(
        std::min<std::size_t>(checked_image_size(volume.header), PiecePixels));
    for (std::int64_t piece = 0; piece < count_pieces(volume.header); ++piece) {
        const VolumeBox box = volume_piece(volume.header, piece);
        read_box(volume, box, pixels.data());
        range = widen(range, std::span(pixels).first(box_size(box)));
    }
    return range;
}

void report_range(const StudyReport &report, const Volume &volume, const ValueRange &range)
{
    std::fprintf(report.facts, "%s: ", volume_name(volume).c_str());
    if (range.smallest > range.largest) {
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
