#include "image/normalisation.h"
#include "tests/support/test.h"

#include <numeric>

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

static const std::string NoBand = "status 77: warning:  no pixel to calculate global value...\n";

// What measuring and printing say.
static std::string measured(const std::vector<float> &pixels, const NormSet &norm_set = Defaults)
{
    return ending([&] {
        NormValues values{};
        norm_histogram(pixels.data(), row_of(pixels), norm_set, values, Check);
        print_normvalue(values);
    });
}

TEST(NormHistogram, MeasuresTheInFieldPixels)
{
    // 0 to 999: the running count reaches 999 in bin 1022 (998 / (999 / 1024) = 1022.97), whose
    // lower edge is 997.049; the pixels 399 to 997 lie in the band.
    std::vector<float> ramp(1000);
    std::iota(ramp.begin(), ramp.end(), 0.0F);
    // Pixels below the check value change nothing; one equal to it is in field.
    ramp.push_back(-10001.0F);
    ramp.insert(ramp.begin(), -1e10F);
    EXPECT_EQ(measured(ramp), "status 77: Max=999.000;Min=  0.000;Peak=997.049;Avg=698.000\n");
    ramp.push_back(Check);
    EXPECT_TRUE(measured(ramp).starts_with("status 77: Max=999.000;Min=-10000.000;"));
}

TEST(NormHistogram, PeakAndBandHaveTheirLimits)
{
    // Four bins of width 1 from 0 on, and one for the 4: two pixels are half of four.
    const std::vector<float> pixels{0, 4, 1, 2};
    EXPECT_EQ(measured(pixels, {0.5F, 0.5F, 4}),
              NoBand + "Max=  4.000;Min=  0.000;Peak=  1.000;Avg=  0.000\n");
    // The pixel at the lower limit (1 = 0.5 * 2) counts, the one at the peak (2) doesn't.
    EXPECT_EQ(measured(pixels, {0.75F, 0.5F, 4}),
              "status 77: Max=  4.000;Min=  0.000;Peak=  2.000;Avg=  1.000\n");
    // A target beyond the count ends after the last bin, at 5; none at all stops at the first.
    EXPECT_EQ(measured(pixels, {1.5F, 0.5F, 4}),
              "status 77: Max=  4.000;Min=  0.000;Peak=  5.000;Avg=  4.000\n");
    EXPECT_TRUE(measured(pixels, {0.0F, 0.5F, 4}).find("Peak=  0.000") != std::string::npos);
}

TEST(NormHistogram, SumsInSinglePrecisionFromTheLastPixelToTheFirst)
{
    // From the end, each 1 is lost on 2^24; from the front, or in double precision, they make 4.
    EXPECT_EQ(measured({1.0F, 1.0F, 1.0F, 1.0F, 16777216.0F, 1e9F}, {1.0F, -1.0F, 4}),
              "status 77: Max=1000000000.000;Min=  1.000;Peak=1000000000.000;Avg=3355443.250\n");
    // Of two zeros the last in the volume is kept.
    for (const bool negative_last : {false, true}) {
        const std::vector<float> zeros{negative_last ? 0.0F : -0.0F, -1.0F,
                                       negative_last ? -0.0F : 0.0F};
        NormValues values{};
        norm_histogram(zeros.data(), row_of(zeros), Defaults, values, Check);
        EXPECT_EQ(std::signbit(values.max), negative_last);
    }
}

TEST(NormHistogram, DegenerateVolumesAreSaidSo)
{
    const std::string none = "Max=-1000000015047466219876688855040.000;"
                             "Min=1000000015047466219876688855040.000;"
                             "Peak=1000000015047466219876688855040.000;Avg=  0.000\n";
    EXPECT_EQ(measured({-20000.0F, -20001.0F}), NoBand + none);
    EXPECT_EQ(measured({7.0F, 7.0F}),
              "status 77: warning: uniform pixel value in the image matrix...\n"
              "Max=  7.000;Min=  7.000;Peak=  7.000;Avg=  7.000\n");
    EXPECT_EQ(measured({0.0F, 1e-19F}), "status 0: invalid 'step' in normalization\n");
    ImageHeader gated{};
    gated.num_gates = 2;
    NormValues values{};
    // The number of bins comes after the gates, and a volume of one value needs none.
    const NormSet no_bins{.peak_threshold = 0.999F, .lower_threshold = 0.4F, .bin_count = -2};
    EXPECT_EQ(ending([&] { norm_histogram(nullptr, gated, no_bins, values, Check); }),
              "status 0: gated image not support in the current version (norm_histogram)\n");
    EXPECT_TRUE(measured({7.0F, 7.0F}, no_bins).starts_with("status 77: "));
    EXPECT_EQ(measured({7.0F, 8.0F}, no_bins),
              "status 0: illegal number of bins for normalization: -2\n");
}

TEST(NormHistogram, NoNumbersAndInfinitiesStayInBounds)
{
    EXPECT_EQ(measured({NotANumber, 1.0F, 3.0F, NotANumber}, {0.5F, 0.0F, 2}),
              NoBand + "Max=  3.000;Min=  1.000;Peak=  1.000;Avg=  0.000\n");
    EXPECT_EQ(measured({Infinity, 1.0F, 3.0F}),
              NoBand + "Max=    inf;Min=  1.000;Peak=    nan;Avg=  0.000\n");
    // No target stops at the first bin, an endless one after the last.
    EXPECT_NE(measured({0.0F, 3.0F}, {NotANumber, 0.0F, 3}).find("Peak=  0.000"),
              std::string::npos);
    EXPECT_NE(measured({0.0F, 3.0F}, {Infinity, 0.0F, 3}).find("Peak=  4.000"), std::string::npos);
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
