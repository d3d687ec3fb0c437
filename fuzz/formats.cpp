// Writing, then reading. An input is a line "KEYWORD OPERATION [QUANTISATION [THRESHOLD
// REPLACEMENT]]", a text header that describes the study, and its pixels as they lie in memory, 0
// where they end. Operations: 0 the whole study, 1 one volume, 2 the header alone, 3 bare data.

#include "fuzz/harness.h"
#include "image/allocate.h"
#include "image/cutoff.h"
#include "image/format_dispatch.h"
#include "image/image_geometry.h"
#include "image/raw_header.h"
#include "prefs/numbers.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>
#include <span>
#include <vector>

using namespace velmorant;

namespace
{

struct Order {
    std::string keyword;
    std::int32_t operation = 0;
    float quantisation = 0.0F;
    Cutoff cutoff{KeepAll, 0.0F};
};

} // namespace

static std::string next_word(std::string_view &line)
{
    line.remove_prefix(std::min(line.find_first_not_of(' '), line.size()));
    std::string word(line.substr(0, line.find(' ')));
    line.remove_prefix(word.size());
    return word;
}

static Order read_order(std::string_view line)
{
    Order order{.keyword = next_word(line)};
    order.keyword.resize(std::strlen(order.keyword.c_str())); // a zero in it ends it
    order.operation = text_to_int32(next_word(line).c_str());
    order.quantisation = text_to_float(next_word(line).c_str());
    if (!line.empty()) {
        order.cutoff.threshold = text_to_float(next_word(line).c_str());
        order.cutoff.replacement = text_to_float(next_word(line).c_str());
    }
    return order;
}

static bool same_bits(std::span<const float> a, std::span<const float> b)
{
    return std::ranges::equal(a, b, [](float x, float y) {
        return std::bit_cast<std::uint32_t>(x) == std::bit_cast<std::uint32_t>(y);
    });
}

// How far off the pixels of a study may be, or a negative number where that can't be said: another
// scaling than to the extreme of all, an extreme that six decimals don't state well, a value that
// no integer stands for.
static float tolerance(std::span<const float> pixels, const Order &order)
{
    if (order.quantisation != 0.0F || order.cutoff.threshold != KeepAll) {
        return -1.0F;
    }
    float extreme = 0.0F;
    float lowest = 0.0F;
    for (const float pixel : pixels) {
        if (!std::isfinite(pixel)) {
            return -1.0F;
        }
        extreme = std::max(extreme, std::fabs(pixel));
        lowest = std::min(lowest, pixel);
    }
    if (extreme < 1.0F || extreme > 1e15F) {
        return -1.0F;
    }
    // Below 0 it is up to a unit and a half: an ECAT 6 file rounds toward 0 there, and the step of
    // a raw study that is wholly below 0 has a sign.
    return extreme / 32700.0F * (lowest < 0.0F ? 1.53F : 0.53F);
}

static void compare_volume(std::span<const float> written, std::span<const float> found,
                           float allowed)
{
    for (std::size_t i = 0; i < written.size(); ++i) {
        fuzz::require(!(std::fabs(found[i] - written[i]) > allowed), "pixels within a step");
    }
}

// Reads all volumes back and compares them with what was written.
static void read_back(const char *name, const ImageHeader &stated, const Order &order,
                      std::vector<float> study)
{
    ImageHeader header{};
    read_header(name, header, order.keyword.c_str());
    if (study.empty()) {
        return;
    }
    const bool ecat = order.keyword == "CTI6";
    fuzz::require(header.num_slices == stated.num_slices && header.x_dim == stated.x_dim &&
                      header.y_dim == stated.y_dim && header.num_frames == stated.num_frames &&
                      header.num_beds == stated.num_beds,
                  "the same dimensions");
    for (float &pixel : study) {
        pixel = apply_cutoff(order.cutoff, pixel);
    }
    const std::size_t size = checked_image_size(header);
    const float allowed = tolerance(study, order);
    std::vector<float> volume(size);
    for (std::int32_t frame = 1; frame <= header.num_frames; ++frame) {
        for (std::int32_t bed = 0; bed <= header.num_beds; ++bed) {
            const char *keyword = order.keyword.c_str();
            read_image_planes(name, volume.data(), header, {frame, 1, 1, 0, bed}, keyword);
            const std::size_t place = volume_index(header, frame, bed, keyword) * size;
            const auto written = std::span(study).subspan(place, size);
            if (order.keyword.starts_with("FLOAT")) {
                fuzz::require(same_bits(written, volume), "the same floats");
            } else if (allowed >= 0.0F && (!ecat || unread_pixels(header, keyword) == 0)) {
                compare_volume(written, volume, allowed);
            }
        }
    }
}

// Takes as many pixels as there are.
static void fill(std::span<float> study, std::string_view bytes)
{
    for (float &pixel : study.first(std::min(study.size(), bytes.size() / sizeof(float)))) {
        std::memcpy(&pixel, bytes.data(), sizeof(float));
        bytes.remove_prefix(sizeof(float));
    }
}

static void write_and_read(const Order &order, std::string_view pixels)
{
    ImageHeader header{};
    read_header_binary("a.img", header);
    const FormatSetting settings = create_format_setting(order.keyword, order.quantisation);
    const auto [threshold, replacement] = order.cutoff;
    if (order.operation != 0) {
        header.num_frames = 1;
        header.num_beds = 0;
    }
    check_format_limits(header, order.keyword.c_str());
    const std::int32_t size = checked_study_size(header);
    const Block<float> block(allocate_float_zero(size, "study"));
    std::vector<float> study(block.get(), block.get() + size);
    fill(study, pixels);
    const std::vector<float> before = study;

    switch (order.operation) {
    case 0:
        write_image_matrix_multiple("o.img", study.data(), header, settings, threshold,
                                    replacement);
        break;
    case 1:
        write_image_matrix("o.img", study.data(), header, settings, threshold, replacement);
        break;
    case 2:
        write_image_header("o.img", study.data(), header, settings, threshold, replacement);
        break;
    default:
        write_image_matrix_wo_header("o.img", study.data(), header, settings, threshold,
                                     replacement);
        break;
    }
    fuzz::require(same_bits(study, before), "a buffer that is as it was");
    if (order.operation == 0 || order.operation == 1) {
        read_back("o.img", header, order, study);
    }
}

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const fuzz::InputFile header("a.hdr");
    std::string_view input = fuzz::as_text(data, size);
    const Order order = read_order(input.substr(0, input.find('\n')));
    input.remove_prefix(std::min(input.find('\n'), input.size()));
    const std::size_t length = fuzz::header_length(input);
    header.write(input.substr(0, length));
    return fuzz::make_run([&] { write_and_read(order, input.substr(length)); });
}
