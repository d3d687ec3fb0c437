#include "image/volume_statistics.h"

#include "image/largest_pixels.h"
#include "image/wide_vectors.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <numeric>
#include <utility>

namespace velmorant
{

// Running extremes kept side by side, each of every so many-th pixel, so that no comparison waits
// for the one before it.
static constexpr std::size_t Lanes = 16;

static constexpr float NoMaximum = -1e30F;
static constexpr float NoMinimum = 1e30F;
static constexpr float Infinity = std::numeric_limits<float>::infinity();

namespace
{

// A piece of the volume in memory, or so many zeros.
struct Piece {
    const float *pixels; // null for zeros
    std::size_t count;
};

struct LaneRanges {
    float highest[Lanes];
    float lowest[Lanes];
    std::int32_t out_of_field[Lanes];
};

} // namespace

static Piece piece_pixels(VolumePixels &volume, std::int64_t number)
{
    const VolumeBox box = volume_piece(volume.header(), number);
    return {.pixels = volume.box(box).first, .count = box_size(box)};
}

[[gnu::always_inline]] static inline void take_pixel(LaneRanges &ranges, std::size_t lane,
                                                     float pixel, float check)
{
    const bool out = check > pixel;
    const float high = out ? NoMaximum : pixel;
    const float low = out ? NoMinimum : pixel;
    ranges.highest[lane] = high > ranges.highest[lane] ? high : ranges.highest[lane];
    ranges.lowest[lane] = low < ranges.lowest[lane] ? low : ranges.lowest[lane];
    ranges.out_of_field[lane] += out ? 1 : 0;
}

VELMORANT_WIDE_VECTORS
static LaneRanges survey_lanes(const float *pixels, std::size_t count, float check)
{
    LaneRanges ranges{};
    std::ranges::fill(ranges.highest, NoMaximum);
    std::ranges::fill(ranges.lowest, NoMinimum);
    std::size_t i = 0;
    for (; i + Lanes <= count; i += Lanes) {
        for (std::size_t lane = 0; lane < Lanes; ++lane) {
            take_pixel(ranges, lane, pixels[i + lane], check);
        }
    }
    for (; i < count; ++i) {
        take_pixel(ranges, 0, pixels[i], check);
    }
    return ranges;
}

static FieldRange survey_piece(const Piece &piece, float check, LargestPixels &largest)
{
    FieldRange range{.max = NoMaximum, .min = NoMinimum, .count = 0};
    if (piece.pixels == nullptr) {
        if (check > 0.0F) {
            return range;
        }
        largest.add_zeros(piece.count);
        return {.max = 0.0F, .min = 0.0F, .count = static_cast<std::int32_t>(piece.count)};
    }
    for (std::size_t start = 0; start < piece.count; start += LargestPixels::MostAtOnce) {
        const std::size_t count = std::min(LargestPixels::MostAtOnce, piece.count - start);
        const LaneRanges ranges = survey_lanes(piece.pixels + start, count, check);
        const float max = *std::ranges::max_element(ranges.highest);
        largest.add(piece.pixels + start, count, max);
        range.max = std::max(range.max, max);
        range.min = std::min(range.min, *std::ranges::min_element(ranges.lowest));
        range.count +=
            std::accumulate(std::begin(ranges.out_of_field), std::end(ranges.out_of_field),
                            static_cast<std::int32_t>(count), std::minus{});
    }
    return range;
}

// Gives an extreme of 0 the sign of the volume's last zero, as a loop from the last pixel to the
// first would. (0 and -0 are equal.)
static float settle_zero(VolumePixels &volume, float extreme)
{
    for (std::int64_t number = count_pieces(volume.header()); extreme == 0.0F && number-- > 0;) {
        const Piece piece = piece_pixels(volume, number);
        if (piece.pixels == nullptr) {
            return 0.0F;
        }
        const std::span pixels(piece.pixels, piece.count);
        const auto found = std::find(pixels.rbegin(), pixels.rend(), 0.0F);
        if (found != pixels.rend()) {
            return *found;
        }
    }
    return extreme;
}

// Starts in the middle, where most volumes are brightest: the sooner the largest pixels are found,
// the fewer others are kept on the way.
FieldSurvey survey_field(VolumePixels &volume, float check, std::size_t kept)
{
    FieldRange range{.max = NoMaximum, .min = NoMinimum, .count = 0};
    const std::int64_t pieces = count_pieces(volume.header());
    std::vector<float> maxima(static_cast<std::size_t>(pieces));
    LargestPixels largest(kept, check);
    for (std::int64_t turn = 0; turn < pieces; ++turn) {
        const std::int64_t number = (turn + pieces / 2) % pieces;
        const Piece piece = piece_pixels(volume, number);
        const FieldRange found = survey_piece(piece, check, largest);
        range.max = std::max(range.max, found.max);
        range.min = std::min(range.min, found.min);
        range.count += found.count;
        maxima[static_cast<std::size_t>(number)] = found.max;
    }
    range.max = settle_zero(volume, range.max);
    range.min = settle_zero(volume, range.min);
    return {.check = check,
            .range = range,
            .piece_maxima = std::move(maxima),
            .largest = std::move(largest)};
}

static float largest_float_up_to(std::int32_t number)
{
    const auto nearest = static_cast<float>(number);
    const bool beyond = static_cast<double>(nearest) > static_cast<double>(number);
    return beyond ? std::nextafter(nearest, 0.0F) : nearest;
}

namespace
{

// The bins of a histogram.
struct Bins {
    float lowest;
    float step;
    std::int32_t last;
};

} // namespace

// The bin of every pixel, 0 for one out of field.
VELMORANT_WIDE_VECTORS
static void find_bins(const float *pixels, std::size_t count, float check, const Bins &histogram,
                      std::int32_t *bins)
{
    const auto [lowest, step, last] = histogram;
    const float limit = largest_float_up_to(last);
    for (std::size_t i = 0; i < count; ++i) {
        const float quotient = (pixels[i] - lowest) / step;
        // Held within the histogram before it is converted. A NaN is not above 0.
        const float above = quotient > 0.0F ? quotient : 0.0F;
        const auto held = static_cast<std::int32_t>(above < limit ? above : limit);
        const std::int32_t bin = above > limit ? last : held;
        bins[i] = check > pixels[i] ? 0 : bin;
    }
}

// The bin of an in-field pixel.
static std::size_t find_bin(float pixel, const Bins &histogram)
{
    std::int32_t bin = 0;
    find_bins(&pixel, 1, -Infinity, histogram, &bin);
    return static_cast<std::size_t>(bin);
}

// Pixels that are looked at together in the passes below.
static constexpr std::size_t BlockPixels = 256;

// Counts the pixels of every bin. Bin 0 counts those that are out of field, too.
static void count_pixels(VolumePixels &volume, float check, const Bins &bins,
                         std::span<std::int32_t> histogram)
{
    for (std::int64_t number = 0; number < count_pieces(volume.header()); ++number) {
        const Piece piece = piece_pixels(volume, number);
        if (piece.pixels == nullptr) {
            const std::size_t bin = check > 0.0F ? 0 : find_bin(0.0F, bins);
            histogram[bin] += static_cast<std::int32_t>(piece.count);
            continue;
        }
        for (std::size_t start = 0; start < piece.count; start += BlockPixels) {
            const std::size_t count = std::min(BlockPixels, piece.count - start);
            std::int32_t found[BlockPixels];
            find_bins(piece.pixels + start, count, check, bins, found);
            for (const std::int32_t bin : std::span(found, count)) {
                ++histogram[static_cast<std::size_t>(bin)];
            }
        }
    }
}

// The first bin beyond which there are at most so many pixels.
static std::size_t find_bin_below(std::int64_t pixels, std::span<const std::int32_t> histogram)
{
    std::size_t bin = histogram.size() - 1;
    while (bin > 0 && histogram[bin] <= pixels) {
        pixels -= histogram[bin];
        --bin;
    }
    return bin;
}

std::size_t find_peak_bin(VolumePixels &volume, FieldSurvey &survey, float step,
                          std::int32_t target, std::span<std::int32_t> histogram)
{
    const FieldRange &range = survey.range;
    if (target > range.count) {
        return histogram.size();
    }
    const Bins bins{
        .lowest = range.min, .step = step, .last = static_cast<std::int32_t>(histogram.size() - 1)};
    const std::int64_t above_peak = std::int64_t{range.count} - target;
    LargestPixels &largest = survey.largest;
    if (above_peak < static_cast<std::int64_t>(largest.count())) {
        // Bins are in the order of their pixels. (Where the step is no number above 0, every pixel
        // falls into the first bin.)
        return find_bin(largest.pixel_of_rank(static_cast<std::size_t>(above_peak)), bins);
    }
    if (target <= 0 || largest.has_all()) {
        return 0; // no number is so low
    }
    count_pixels(volume, survey.check, bins, histogram);
    return find_bin_below(above_peak, histogram);
}

namespace
{

struct Band {
    float check;
    float lower;
    float upper;
};

} // namespace

// Says 1 of every pixel that is in the band, else 0. Returns how many are.
VELMORANT_WIDE_VECTORS
static std::uint32_t mark_band(const float *pixels, std::size_t count, const Band &band,
                               std::uint32_t *marks)
{
    const auto [check, lower, upper] = band;
    std::uint32_t in_band = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const float pixel = pixels[i];
        marks[i] =
            static_cast<std::uint32_t>(!(check > pixel) & (pixel >= lower) & (pixel < upper));
        in_band += marks[i];
    }
    return in_band;
}

// Adds the marked pixels of a block from its last to its first. They are moved together first,
// without a branch, so that nothing but the additions themselves is a chain.
static float add_marked(float sum, const float *pixels, std::size_t count,
                        const std::uint32_t *marks)
{
    float marked[BlockPixels];
    std::size_t kept = 0;
#pragma GCC unroll 4
    for (std::size_t i = count; i-- > 0;) {
        marked[kept] = pixels[i];
        kept += marks[i];
    }
    for (std::size_t i = 0; i < kept; ++i) {
        sum += marked[i];
    }
    return sum;
}

static void add_piece(BandSum &sum, const Piece &piece, const Band &band)
{
    const std::size_t blocks = (piece.count + BlockPixels - 1) / BlockPixels;
    for (std::size_t block = blocks; block-- > 0;) {
        const float *pixels = piece.pixels + block * BlockPixels;
        const std::size_t count = std::min(BlockPixels, piece.count - block * BlockPixels);
        std::uint32_t marks[BlockPixels];
        const std::uint32_t in_band = mark_band(pixels, count, band, marks);
        if (in_band > 0) {
            sum.sum = add_marked(sum.sum, pixels, count, marks);
            sum.count += static_cast<std::int32_t>(in_band);
        }
    }
}

BandSum sum_band(VolumePixels &volume, const FieldSurvey &survey, float lower, float upper)
{
    const Band band{.check = survey.check, .lower = lower, .upper = upper};
    BandSum sum{};
    for (std::int64_t number = count_pieces(volume.header()); number-- > 0;) {
        if (survey.piece_maxima[static_cast<std::size_t>(number)] < lower) {
            continue;
        }
        const Piece piece = piece_pixels(volume, number);
        if (piece.pixels != nullptr) {
            add_piece(sum, piece, band);
        } else if (!(survey.check > 0.0F) && 0.0F >= lower && 0.0F < upper) {
            sum.count += static_cast<std::int32_t>(piece.count); // zeros leave a sum as it is
        }
    }
    return sum;
}

} // namespace velmorant
