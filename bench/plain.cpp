#include "bench/plain.h"

#include "app/palette.h"

#include <algorithm>
#include <bit>

using namespace velmorant;

namespace bench::plain
{

// The unsigned number in `count` bytes.
static std::uint32_t number(const std::uint8_t *bytes, std::size_t count, bool big_endian)
{
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < count; ++i) {
        value = value << 8U | bytes[big_endian ? i : count - 1 - i];
    }
    return value;
}

std::vector<float> decode_shorts(const std::vector<std::uint8_t> &bytes, bool big_endian,
                                 bool is_signed, float factor)
{
    std::vector<float> pixels;
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
        const auto stored = static_cast<std::int32_t>(number(&bytes[i], 2, big_endian));
        pixels.push_back(
            static_cast<float>(is_signed && stored >= 32768 ? stored - 65536 : stored) * factor);
    }
    return pixels;
}

std::vector<float> decode_floats(const std::vector<std::uint8_t> &bytes, bool big_endian)
{
    std::vector<float> pixels;
    for (std::size_t i = 0; i + 3 < bytes.size(); i += 4) {
        pixels.push_back(std::bit_cast<float>(number(&bytes[i], 4, big_endian)));
    }
    return pixels;
}

FieldRange find_range(Pixels pixels, float check)
{
    FieldRange range{.max = -1e30F, .min = 1e30F, .count = 0};
    for (std::size_t i = pixels.size(); i-- > 0;) {
        if (check > pixels[i]) {
            continue;
        }
        ++range.count;
        if (pixels[i] < range.min) {
            range.min = pixels[i];
        }
        if (pixels[i] > range.max) {
            range.max = pixels[i];
        }
    }
    return range;
}

std::size_t find_peak_bin(Pixels pixels, float check, float lowest, float step, std::int32_t target,
                          std::size_t bins)
{
    std::vector<std::int32_t> histogram(bins);
    for (std::size_t i = pixels.size(); i-- > 0;) {
        if (check > pixels[i]) {
            continue;
        }
        const float bin = (pixels[i] - lowest) / step;
        if (!(bin > 0.0F)) {
            ++histogram.front();
        } else if (static_cast<double>(bin) >= static_cast<double>(bins - 1)) {
            ++histogram.back();
        } else {
            ++histogram[static_cast<std::size_t>(bin)];
        }
    }
    std::int64_t sum = 0;
    for (std::size_t bin = 0; bin < bins; ++bin) {
        sum += histogram[bin];
        if (sum >= target) {
            return bin;
        }
    }
    return bins;
}

BandSum sum_band(Pixels pixels, float check, float lower, float upper)
{
    BandSum band{};
    for (std::size_t i = pixels.size(); i-- > 0;) {
        if (!(check > pixels[i]) && pixels[i] >= lower && pixels[i] < upper) {
            band.sum += pixels[i];
            ++band.count;
        }
    }
    return band;
}

static float value_at(Pixels volume, const ImageHeader &header, const Rescaling &rescaling,
                      std::int32_t x, std::int32_t y, std::int32_t slice)
{
    if (x < 0 || x >= header.x_dim || y < 0 || y >= header.y_dim || slice >= header.num_slices) {
        return 0.0F;
    }
    const std::int64_t row = std::int64_t{slice} * header.y_dim + y;
    const float pixel = volume[static_cast<std::size_t>(row * header.x_dim + x)];
    return rescaling.check > pixel ? rescaling.out_value : pixel * rescaling.factor;
}

std::vector<std::uint8_t> render_montage(Pixels volume, const ImageHeader &header,
                                         const MontageGrid &grid, const PixelMapping &mapping)
{
    std::vector<std::uint8_t> indices;
    const std::int32_t left = header.x_dim / 2 - grid.slice_width / 2;
    const std::int32_t top = header.y_dim / 2 - grid.slice_height / 2;
    for (std::int32_t row = 0; row < grid.rows * grid.slice_height; ++row) {
        for (std::int32_t column = 0; column < grid.columns * grid.slice_width; ++column) {
            const float value =
                value_at(volume, header, mapping.rescaling, left + column % grid.slice_width,
                         top + row % grid.slice_height,
                         row / grid.slice_height * grid.columns + column / grid.slice_width);
            const float index = (value - mapping.range.bottom) /
                                (mapping.range.top - mapping.range.bottom) * 254.0F;
            if (!(index > 0.0F)) {
                indices.push_back(0);
            } else {
                indices.push_back(static_cast<std::uint8_t>(index > 254.0F ? 254.0F : index));
            }
        }
    }
    return indices;
}

std::vector<std::uint8_t> colour_pixels(const std::vector<std::uint8_t> &indices)
{
    std::vector<std::uint8_t> pixels;
    for (const std::uint8_t index : indices) {
        pixels.insert(pixels.end(), {red.at(index), green.at(index), blue.at(index)});
    }
    return pixels;
}

} // namespace bench::plain
