// The passes over a volume between reading and rendering.

#include "bench/plain.h"
#include "bench/stage.h"
#include "image/normalisation.h"
#include "image/volume_statistics.h"

#include <bit>

using namespace velmorant;
using bench::phantom_study;
using bench::plain::Pixels;

static constexpr float Check = -10000.0F;
static constexpr std::int32_t Bins = 1024;

namespace
{

// The phantom with pixels that are easily got wrong: out of field, infinite, NaN, zeros of either
// sign.
std::vector<float> awkward_pixels(const bench::Study &study)
{
    static constexpr std::uint32_t Awkward[] = {0x80000000, 0x7FC00000, 0xFF800000, 0xC61C4001,
                                                0xC61C4000, 0x00000001, 0x80000001};
    std::vector<float> pixels = study.pixels;
    for (std::size_t i = 0; i < pixels.size(); i += 37) {
        pixels[i] = std::bit_cast<float>(Awkward[i % std::size(Awkward)]);
    }
    return pixels;
}

// Whether a pass and its plain version do the same to the phantom as it is, as it is easily got
// wrong, and to parts of it of all sizes about a vector's.
template <class Same>
bool same_everywhere(const bench::Study &study, Same same)
{
    const std::vector<float> awkward = awkward_pixels(study);
    bool agrees = same(Pixels(study.pixels)) && same(Pixels(awkward));
    for (std::size_t size = 0; agrees && size < 300; ++size) {
        agrees = same(Pixels(awkward).last(size));
    }
    return agrees;
}

// Some pixels as a volume of one row.
VolumePixels row_of(Pixels pixels)
{
    ImageHeader header{};
    header.x_dim = static_cast<std::int32_t>(pixels.size());
    header.y_dim = header.num_slices = 1;
    return {pixels.data(), header};
}

bool same_bits(float a, float b)
{
    return std::bit_cast<std::uint32_t>(a) == std::bit_cast<std::uint32_t>(b);
}

} // namespace

static void range_stage(benchmark::State &state)
{
    const bench::Study &study = phantom_study(state);
    const auto same = [](Pixels pixels) {
        VolumePixels row = row_of(pixels);
        const FieldRange range = survey_field(row, Check, 0).range;
        const FieldRange plain = bench::plain::find_range(pixels, Check);
        return same_bits(range.max, plain.max) && same_bits(range.min, plain.min) &&
               range.count == plain.count;
    };
    if (bench::check_stage(state, same_everywhere(study, same))) {
        VolumePixels volume(study.pixels.data(), study.header);
        const std::size_t kept = study.pixels.size() / 1000;
        bench::time_stage(state, Pixels(study.pixels).size_bytes(), [&] {
            benchmark::DoNotOptimize(survey_field(volume, Check, std::min(kept, MostKept)));
        });
    }
}
BENCHMARK(range_stage)->Name("range")->Apply(bench::stage_sizes);

// The peak where its pixel is not among those that the survey has kept.
static void peak_stage(benchmark::State &state)
{
    const bench::Study &study = phantom_study(state);
    std::vector<std::int32_t> histogram(Bins + 1);
    const auto find = [&](VolumePixels &volume, FieldSurvey &survey, float fraction) {
        const FieldRange &range = survey.range;
        const float step = (range.max - range.min) / static_cast<float>(Bins);
        const auto target = static_cast<std::int32_t>(static_cast<float>(range.count) * fraction);
        std::ranges::fill(histogram, 0);
        return find_peak_bin(volume, survey, step, target, histogram);
    };
    const auto same = [&](Pixels pixels) {
        VolumePixels row = row_of(pixels);
        bool agrees = true;
        for (const std::size_t kept : {std::size_t{0}, std::size_t{50}, MostKept}) {
            FieldSurvey survey = survey_field(row, Check, kept);
            const FieldRange &range = survey.range;
            const float step = (range.max - range.min) / static_cast<float>(Bins);
            for (const float fraction : {-1.0F, 0.0F, 0.7F, 0.99F, 0.999F, 1.0F, 1.1F}) {
                const auto target =
                    static_cast<std::int32_t>(static_cast<float>(range.count) * fraction);
                agrees = agrees && find(row, survey, fraction) ==
                                       bench::plain::find_peak_bin(pixels, Check, range.min, step,
                                                                   target, histogram.size());
            }
        }
        return agrees;
    };
    if (bench::check_stage(state, same_everywhere(study, same))) {
        VolumePixels volume(study.pixels.data(), study.header);
        FieldSurvey survey = survey_field(volume, Check, 0);
        bench::time_stage(state, Pixels(study.pixels).size_bytes(),
                          [&] { benchmark::DoNotOptimize(find(volume, survey, 0.5F)); });
    }
}
BENCHMARK(peak_stage)->Name("peak/counted")->Apply(bench::stage_sizes);

static void average_stage(benchmark::State &state)
{
    const bench::Study &study = phantom_study(state);
    VolumePixels volume(study.pixels.data(), study.header);
    const FieldSurvey survey = survey_field(volume, Check, 0);
    const float upper = survey.range.max * 0.8F;
    const float lower = upper * 0.4F;
    const auto same = [&](Pixels pixels) {
        VolumePixels row = row_of(pixels);
        const BandSum band = sum_band(row, survey_field(row, Check, 0), lower, upper);
        const BandSum plain = bench::plain::sum_band(pixels, Check, lower, upper);
        return same_bits(band.sum, plain.sum) && band.count == plain.count;
    };
    if (bench::check_stage(state, same_everywhere(study, same))) {
        bench::time_stage(state, Pixels(study.pixels).size_bytes(), [&] {
            benchmark::DoNotOptimize(sum_band(volume, survey, lower, upper));
        });
    }
}
BENCHMARK(average_stage)->Name("average")->Apply(bench::stage_sizes);

static void scaling_stage(benchmark::State &state)
{
    const bench::Study &study = phantom_study(state);
    std::vector<float> pixels = awkward_pixels(study);
    std::vector<float> plain = pixels;
    for (float &pixel : plain) {
        pixel = Check > pixel ? -1e10F : pixel * 27.5F;
    }
    multiply_image_with_constant(pixels.data(), study.header, 27.5F, Check, -1e10F);
    if (bench::check_stage(state, std::ranges::equal(pixels, plain, same_bits))) {
        pixels = study.pixels;
        bench::time_stage(state, Pixels(pixels).size_bytes(), [&] {
            multiply_image_with_constant(pixels.data(), study.header, 1.0F, Check, -1e10F);
        });
    }
}
BENCHMARK(scaling_stage)->Name("scaling")->Apply(bench::stage_sizes);
