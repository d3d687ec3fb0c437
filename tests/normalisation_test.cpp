#include "image/normalisation.h"
#include "tests/support/test.h"

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
