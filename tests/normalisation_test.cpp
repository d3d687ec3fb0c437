// What is measured of a volume, by hand and against loops that take one pixel at a time.

#include "bench/plain.h"
#include "image/image_geometry.h"
#include "image/normalisation.h"
#include "image/raw_reader.h"
#include "image/volume_statistics.h"
#include "tests/support/test.h"

#include <random>

using namespace velmorant;
using test::ending;
using test::Infinity;
using test::NotANumber;

static constexpr NormSet Defaults{
    .peak_threshold = 0.999F, .lower_threshold = 0.4F, .bin_count = 1024};
static constexpr float Check = -10000.0F;

static ImageHeader row_of(const std::vector<float> &pixels)
{
    ImageHeader header{};
    header.x_dim = static_cast<std::int32_t>(pixels.size());
    header.y_dim = header.num_slices = header.num_gates = 1;
    return header;
}

// What measuring and printing say.
static std::string measured(const std::vector<float> &pixels, const NormSet &norm_set)
{
    return ending([&] {
        NormValues values{};
        norm_histogram(pixels.data(), row_of(pixels), norm_set, values, Check);
        print_normvalue(values);
    });
}

TEST(NormHistogram, MeasuresTheInFieldPixels)
{
    const std::string uniform = "warning: uniform pixel value in the image matrix...\n";
    const std::string none = "warning:  no pixel to calculate global value...\n";
    const NormSet no_bins{.peak_threshold = 0.999F, .lower_threshold = 0.4F, .bin_count = -2};
    const std::vector<float> four{0, 4, 1, 2};
    // clang-format off
    const struct {
        std::vector<float> pixels;
        NormSet norm_set;
        std::string said;
    } cases[] = {
        // Four bins of width 1 from 0 on, and one for the 4: two pixels are half of four.
        {four, {0.5F, 0.5F, 4}, none + "Max=  4.000;Min=  0.000;Peak=  1.000;Avg=  0.000\n"},
        // The pixel at the lower limit (1 = 0.5 * 2) counts, the one at the peak (2) doesn't.
        {four, {0.75F, 0.5F, 4}, "Max=  4.000;Min=  0.000;Peak=  2.000;Avg=  1.000\n"},
        // A target beyond the count, or an infinite one, ends after the last bin; none stops at the first.
        {four, {1.5F, 0.5F, 4}, "Max=  4.000;Min=  0.000;Peak=  5.000;Avg=  4.000\n"},
        {four, {Infinity, 0.5F, 4}, "Max=  4.000;Min=  0.000;Peak=  5.000;Avg=  4.000\n"},
        {four, {0.0F, 0.5F, 4}, none + "Max=  4.000;Min=  0.000;Peak=  0.000;Avg=  0.000\n"},
        {four, {NotANumber, 0.5F, 4}, none + "Max=  4.000;Min=  0.000;Peak=  0.000;Avg=  0.000\n"},
        // Pixels below the check value change nothing; one equal to it is in field.
        {{0, -10001, 4, 1, -1e10F, 2}, {0.75F, 0.5F, 4}, "Max=  4.000;Min=  0.000;Peak=  2.000;Avg=  1.000\n"},
        {{4, Check}, {0.5F, 2, 4}, none + "Max=  4.000;Min=-10000.000;Peak=-10000.000;Avg=  0.000\n"},
        // From the end, each 1 is lost on 2^24; from the front, or in double precision, they make 4.
        {{1, 1, 1, 1, 16777216, 1e9F}, {1, -1, 4}, "Max=1000000000.000;Min=  1.000;Peak=1000000000.000;Avg=3355443.250\n"},
        {{-2, 2}, {1, 0, 4}, none + "Max=  2.000;Min= -2.000;Peak=  2.000;Avg=  0.000\n"},
        {{7, 7}, no_bins, uniform + "Max=  7.000;Min=  7.000;Peak=  7.000;Avg=  7.000\n"},
        {{NotANumber, 1, 3, NotANumber}, {0.5F, 0, 2}, none + "Max=  3.000;Min=  1.000;Peak=  1.000;Avg=  0.000\n"},
        {{Infinity, 1, 3}, Defaults, none + "Max=    inf;Min=  1.000;Peak=    nan;Avg=  0.000\n"},
        {{-20000, -20001}, Defaults, none + "Max=-1000000015047466219876688855040.000;Min=1000000015047466219876688855040.000;"
                                            "Peak=1000000015047466219876688855040.000;Avg=  0.000\n"},
    };
    // clang-format on
    for (const auto &row : cases) {
        EXPECT_EQ(measured(row.pixels, row.norm_set), "status 77: " + row.said);
    }
    EXPECT_EQ(measured({0.0F, 1e-19F}, Defaults), "status 0: invalid 'step' in normalization\n");
    EXPECT_EQ(measured({7.0F, 8.0F}, no_bins),
              "status 0: illegal number of bins for normalization: -2\n");
    ImageHeader gated{};
    gated.num_gates = 2;
    NormValues values{};
    EXPECT_EQ(ending([&] { norm_histogram(nullptr, gated, no_bins, values, Check); }),
              "status 0: gated image not support in the current version (norm_histogram)\n");
    // Of two zeros the last in the volume is kept.
    for (const float zero : {0.0F, -0.0F}) {
        const std::vector<float> zeros{-zero, -1.0F, zero};
        norm_histogram(zeros.data(), row_of(zeros), Defaults, values, Check);
        EXPECT_EQ(std::signbit(values.max), std::signbit(zero));
    }
}

TEST(MultiplyImage, ScalesInFieldPixelsAndMarksTheOthers)
{
    std::vector<float> pixels{Check, -10000.001F, 2.0F, NotANumber};
    multiply_image_with_constant(pixels.data(), row_of(pixels), 0.5F, Check, -1e10F);
    EXPECT_EQ(pixels[0], -5000.0F);
    EXPECT_EQ(pixels[1], -1e10F);
    EXPECT_EQ(pixels[2], 1.0F);
    EXPECT_TRUE(std::isnan(pixels[3]));
}

// Background and, in its middle, pixels of all values; some that are easily got wrong anywhere.
static std::vector<float> make_volume(std::size_t size, std::minstd_rand &random)
{
    static const std::vector<float> awkward{0.0F,      -0.0F, NotANumber, -Infinity,
                                            -10001.0F, Check, 1e-45F,     1e4F};
    std::vector<float> pixels(size);
    for (std::size_t i = 0; i < size; ++i) {
        const bool inside = i > size / 3 && i < size / 2;
        const auto any = static_cast<float>(random() % 1000);
        pixels[i] = random() % 64 == 0 ? awkward[random() % awkward.size()] : inside ? any : 0.0F;
    }
    return pixels;
}

static std::uint32_t bits(float value)
{
    return std::bit_cast<std::uint32_t>(value);
}

static ImageHeader shape(std::int32_t x_dim, std::int32_t y_dim, std::int32_t slices)
{
    ImageHeader header{};
    header.x_dim = x_dim;
    header.y_dim = y_dim;
    header.num_slices = slices;
    return header;
}

// kept: how many of the largest pixels the survey keeps, for peaks that are among them or aren't.
static void compare(VolumePixels &volume, const std::vector<float> &pixels, std::size_t kept,
                    float check = Check)
{
    FieldSurvey survey = survey_field(volume, check, kept);
    const FieldRange plain = bench::plain::find_range(pixels, check);
    EXPECT_EQ(bits(survey.range.max), bits(plain.max));
    EXPECT_EQ(bits(survey.range.min), bits(plain.min));
    EXPECT_EQ(survey.range.count, plain.count);

    for (const std::int32_t bins : {1, 1024}) {
        const float step = (plain.max - plain.min) / static_cast<float>(bins);
        for (const float part : {-1.0F, 0.0F, 0.3F, 0.9F, 0.999F, 1.0F, 1.1F}) {
            std::vector<std::int32_t> histogram(static_cast<std::size_t>(bins) + 1);
            const auto target = static_cast<std::int32_t>(static_cast<float>(plain.count) * part);
            EXPECT_EQ(find_peak_bin(volume, survey, step, target, histogram),
                      bench::plain::find_peak_bin(pixels, check, plain.min, step, target,
                                                  histogram.size()))
                << bins << " bins, " << part << ", " << kept << " kept";
        }
    }
    for (const auto &[lower, upper] :
         {std::pair{400.0F, 900.0F}, {-Infinity, Infinity}, {plain.max, Infinity}}) {
        const BandSum band = sum_band(volume, survey, lower, upper);
        const BandSum plain_band = bench::plain::sum_band(pixels, check, lower, upper);
        EXPECT_EQ(bits(band.sum), bits(plain_band.sum));
        EXPECT_EQ(band.count, plain_band.count);
    }
}

TEST(Statistics, AreThoseOfLoopsPixelByPixel)
{
    std::minstd_rand random(1); // NOLINT(cert-msc32-c,cert-msc51-cpp): the same every time
    const auto compare_shape = [&](const ImageHeader &header) {
        SCOPED_TRACE(header.x_dim);
        const std::vector<float> pixels = make_volume(image_size(header), random);
        VolumePixels volume(pixels.data(), header);
        for (const std::size_t kept : {0U, 20U, 200000U}) {
            compare(volume, pixels, kept);
        }
    };
    for (std::int32_t size = 0; size < 3000; size += size < 70 ? 1 : 197) {
        compare_shape(shape(size, 1, 1));
    }
    // Pieces of a row, of rows, of slices.
    compare_shape(shape(70000, 1, 2));
    compare_shape(shape(100, 400, 2));
    compare_shape(shape(40, 40, 50));
}

TEST(Statistics, CountWhatIsMissingFromAFile)
{
    ImageHeader header = shape(1000, 50, 5);
    header.num_frames = header.right_on_left = 1;
    const ImageMatrix first{.frame = 1, .plane = 1, .gate = 1, .data = 0, .bed = 0};
    for (const float stored : {-3.0F, 5.0F, NotANumber}) {
        std::vector<float> pixels(60000, stored);
        test::write_file("a.img", test::stored_floats(pixels, false));
        pixels.resize(250000);
        VolumePixels volume(open_raw_volume("a.img", header, first, StoredType::Float),
                            allocate_box_buffer(header));
        for (const float check : {Check, 1.0F}) {
            compare(volume, pixels, 0, check);
            compare(volume, pixels, 200000, check);
        }
    }
}

TEST(Statistics, HoldBinsThatAreMoreThanFloatsCanCount)
{
    // The last bin, 16777219, is no float; the nearest one, the larger pixel's bin, is beyond it.
    std::vector<std::int32_t> histogram(16777220);
    const std::vector<float> pixels{0.0F, 16777220.0F};
    VolumePixels volume(pixels.data(), shape(2, 1, 1));
    FieldSurvey survey = survey_field(volume, Check, 2);
    EXPECT_EQ(find_peak_bin(volume, survey, 1.0F, 2, histogram), 16777219U);
}
