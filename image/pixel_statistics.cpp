#include "image/pixel_statistics.h"

#include "image/expect_pixels.h"
#include "image/wide_vectors.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <limits>
#include <utility>

namespace velmorant
{

// Pixels that are looked at together: what can be said of all of them at once saves looking at each.
static constexpr std::size_t BlockPixels = 256;

// How many pixels before its turn a block is expected.
static constexpr std::size_t PixelsAhead = 4 * BlockPixels;

// Extremes that are kept side by side, each of every so many-th pixel, so that no comparison waits
// for the one before it.
static constexpr std::size_t Lanes = 16;

static constexpr float NoMaximum = -1e30F;
static constexpr float NoMinimum = 1e30F;

namespace
{

struct LaneRanges {
    float highest[Lanes];
    float lowest[Lanes];
    std::int32_t out_of_field[Lanes];
};

} // namespace

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

// The largest of the lanes, found by folding them in half again and again.
[[gnu::always_inline]] static inline float fold_highest(const float *lanes)
{
    float highest[Lanes];
    std::copy_n(lanes, Lanes, highest);
    for (std::size_t half = Lanes / 2; half > 0; half /= 2) {
        for (std::size_t lane = 0; lane < half; ++lane) {
            const float other = highest[lane + half];
            highest[lane] = other > highest[lane] ? other : highest[lane];
        }
    }
    return highest[0];
}

// Finds the maximum of every block, and the other extremes of all of them.
VELMORANT_WIDE_VECTORS
static LaneRanges survey_blocks(const float *pixels, std::size_t count, float check, float *maxima)
{
    LaneRanges ranges{};
    std::ranges::fill(ranges.lowest, NoMinimum);
    for (std::size_t start = 0; start < count; start += BlockPixels) {
        std::ranges::fill(ranges.highest, NoMaximum);
        const std::size_t end = std::min(start + BlockPixels, count);
        expect_pixels(pixels, count, start + PixelsAhead, BlockPixels);
        std::size_t i = start;
        for (; i + Lanes <= end; i += Lanes) {
            for (std::size_t lane = 0; lane < Lanes; ++lane) {
                take_pixel(ranges, lane, pixels[i + lane], check);
            }
        }
        for (; i < end; ++i) {
            take_pixel(ranges, 0, pixels[i], check);
        }
        *maxima++ = fold_highest(ranges.highest);
    }
    return ranges;
}

// The one pixel value whose equals can be told apart: an extreme of zero has the sign of the last
// zero in the volume.
static float settle_zero(Pixels pixels, float extreme)
{
    if (extreme != 0.0F) {
        return extreme;
    }
    return *std::find(pixels.rbegin(), pixels.rend(), 0.0F);
}

static std::size_t count_blocks(Pixels pixels)
{
    return (pixels.size() + BlockPixels - 1) / BlockPixels;
}

FieldSurvey survey_field(Pixels pixels, float check)
{
    const std::size_t blocks = count_blocks(pixels);
    Block<float> maxima(allocate_float(static_cast<std::int32_t>(blocks), "block maxima"));
    const LaneRanges ranges = survey_blocks(pixels.data(), pixels.size(), check, maxima.get());
    float max = NoMaximum;
    for (const float maximum : std::span(maxima.get(), blocks)) {
        max = maximum > max ? maximum : max;
    }
    std::int32_t out_of_field = 0;
    for (const std::int32_t lane : ranges.out_of_field) {
        out_of_field += lane;
    }
    const FieldRange range{.max = settle_zero(pixels, max),
                           .min = settle_zero(pixels, *std::ranges::min_element(ranges.lowest)),
                           .count = static_cast<std::int32_t>(pixels.size()) - out_of_field};
    return {.pixels = pixels, .check = check, .range = range, .block_maxima = std::move(maxima)};
}

static Pixels block_of(const FieldSurvey &survey, std::size_t start)
{
    return survey.pixels.subspan(start, std::min(BlockPixels, survey.pixels.size() - start));
}

static float largest_float_up_to(std::int32_t number)
{
    const auto nearest = static_cast<float>(number);
    const bool beyond = static_cast<double>(nearest) > static_cast<double>(number);
    return beyond ? std::nextafter(nearest, 0.0F) : nearest;
}

// The bin of every pixel, 0 for one out of field.
VELMORANT_WIDE_VECTORS
static void find_bins(const float *pixels, std::size_t count, float check, float lowest, float step,
                      std::int32_t last_bin, std::int32_t *bins)
{
    const float limit = largest_float_up_to(last_bin);
    for (std::size_t i = 0; i < count; ++i) {
        const float quotient = (pixels[i] - lowest) / step;
        // Held within the histogram before it is converted. A NaN is not above 0.
        const float above = quotient > 0.0F ? quotient : 0.0F;
        const auto held = static_cast<std::int32_t>(above < limit ? above : limit);
        const std::int32_t bin = above > limit ? last_bin : held;
        bins[i] = check > pixels[i] ? 0 : bin;
    }
}

// Sets of counters, for neighbouring pixels in turn: they often fall into the same bin, and none
// waits for the sum of the one before it.
static constexpr std::size_t CounterSets = 4;
using Counters = std::array<std::int32_t *, CounterSets>;

// What the sets beyond the first share as room. A larger histogram has itself for every set.
static constexpr std::size_t SmallHistogram = 2048;
using SpareCounters = std::array<std::int32_t, (CounterSets - 1) * SmallHistogram>;

static Counters spread_counters(std::span<std::int32_t> histogram, SpareCounters &spare)
{
    Counters sets{};
    sets.fill(histogram.data());
    for (std::size_t set = 1; set < CounterSets && histogram.size() <= SmallHistogram; ++set) {
        sets.at(set) = spare.data() + (set - 1) * histogram.size();
    }
    return sets;
}

static void gather_counters(const Counters &sets, std::span<std::int32_t> histogram)
{
    for (std::int32_t *const set : sets) {
        if (set != histogram.data()) {
            std::ranges::transform(histogram, std::span(set, histogram.size()), histogram.begin(),
                                   std::plus{});
        }
    }
}

static void count_bins(const std::int32_t *bins, std::size_t count, const Counters &sets)
{
    const std::size_t whole = count - count % CounterSets;
    for (std::size_t i = 0; i < whole; i += CounterSets) {
        for (std::size_t set = 0; set < CounterSets; ++set) {
            ++sets[set][bins[i + set]];
        }
    }
    for (std::size_t i = whole; i < count; ++i) {
        ++sets[0][bins[i]];
    }
}

// Counts every in-field pixel of `least` or more, and others only where it meets them on its way.
// Bin 0 counts pixels that are out of field, too.
static void count_from(float least, const FieldSurvey &survey, float step,
                       std::span<std::int32_t> histogram)
{
    const auto last_bin = static_cast<std::int32_t>(histogram.size() - 1);
    SpareCounters spare{};
    const Counters sets = spread_counters(histogram, spare);
    const Pixels pixels = survey.pixels;
    for (std::size_t number = 0; number < count_blocks(pixels); ++number) {
        if (survey.block_maxima[number] < least) {
            continue;
        }
        const std::size_t start = number * BlockPixels;
        expect_pixels(pixels.data(), pixels.size(), start + PixelsAhead, BlockPixels);
        const Pixels block = block_of(survey, start);
        std::int32_t bins[BlockPixels];
        find_bins(block.data(), block.size(), survey.check, survey.range.min, step, last_bin, bins);
        count_bins(bins, block.size(), sets);
    }
    gather_counters(sets, histogram);
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

// The bin of a pixel, in field or not.
static std::size_t find_bin(float pixel, const FieldSurvey &survey, float step,
                            std::size_t bin_count)
{
    std::int32_t bin = 0;
    find_bins(&pixel, 1, -std::numeric_limits<float>::infinity(), survey.range.min, step,
              static_cast<std::int32_t>(bin_count - 1), &bin);
    return static_cast<std::size_t>(bin);
}

std::size_t find_peak_bin(const FieldSurvey &survey, float step, std::int32_t target,
                          std::span<std::int32_t> histogram)
{
    const FieldRange &range = survey.range;
    if (target > range.count) {
        return histogram.size();
    }
    const std::int64_t beyond_peak = std::int64_t{range.count} - target;
    // Most peaks lie in the upper half of the range, where only the pixels of that half have a say:
    // the bins are in the order of the pixels. (Where the step is no number above 0, every pixel falls
    // into the first bin.) Of a large histogram most counters are never touched, and clearing it for
    // a second count would touch them all.
    if (histogram.size() <= SmallHistogram) {
        const float middle = range.min + (range.max - range.min) / 2.0F;
        count_from(middle, survey, step, histogram);
        const std::size_t bin = find_bin_below(beyond_peak, histogram);
        if (bin >= find_bin(middle, survey, step, histogram.size())) {
            return bin;
        }
        std::ranges::fill(histogram, 0);
    }
    count_from(-std::numeric_limits<float>::infinity(), survey, step, histogram);
    return find_bin_below(beyond_peak, histogram);
}

// Says 1 of every pixel that is in the band, else 0. Returns how many are.
VELMORANT_WIDE_VECTORS
static std::uint32_t mark_band(const float *pixels, std::size_t count, float check, float lower,
                               float upper, std::uint32_t *marks)
{
    std::uint32_t in_band = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const float pixel = pixels[i];
        marks[i] =
            static_cast<std::uint32_t>(!(check > pixel) & (pixel >= lower) & (pixel < upper));
        in_band += marks[i];
    }
    return in_band;
}

// Adds the marked pixels of a block from its last to its first. They are moved together first, without
// a branch, so that nothing but the additions themselves is a chain.
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

BandSum sum_band(const FieldSurvey &survey, float lower, float upper)
{
    BandSum band{};
    const Pixels pixels = survey.pixels;
    for (std::size_t number = count_blocks(pixels); number-- > 0;) {
        if (survey.block_maxima[number] < lower) {
            continue;
        }
        const std::size_t start = number * BlockPixels;
        if (start >= PixelsAhead) {
            expect_pixels(pixels.data(), pixels.size(), start - PixelsAhead, BlockPixels);
        }
        const Pixels block = block_of(survey, start);
        std::uint32_t marks[BlockPixels];
        const std::uint32_t in_band =
            mark_band(block.data(), block.size(), survey.check, lower, upper, marks);
        if (in_band > 0) {
            band.sum = add_marked(band.sum, block.data(), block.size(), marks);
            band.count += static_cast<std::int32_t>(in_band);
        }
    }
    return band;
}

} // namespace velmorant
