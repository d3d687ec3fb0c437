// The passes over a volume against loops that take one pixel at a time.

#include "bench/plain.h"
#include "image/image_geometry.h"
#include "image/raw_reader.h"
#include "image/volume_statistics.h"
#include "tests/support/test.h"

#include <random>

using namespace velmorant;
using test::Infinity;
using test::NotANumber;

static constexpr float CheckValue = -10000.0F;

// Background and, in its middle, pixels of all values; some that are easily got wrong anywhere.
static std::vector<float> make_volume(std::size_t size, std::minstd_rand &random)
{
    static const std::vector<float> awkward{0.0F,      -0.0F,      NotANumber, -Infinity,
                                            -10001.0F, CheckValue, 1e-45F,     1e4F};
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
                    float check = CheckValue)
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
        for (const float check : {CheckValue, 1.0F}) {
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
    FieldSurvey survey = survey_field(volume, CheckValue, 2);
    EXPECT_EQ(find_peak_bin(volume, survey, 1.0F, 2, histogram), 16777219U);
}
