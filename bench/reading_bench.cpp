// Reading a raw volume, warm in the page cache, in every element type and byte order.

#include "bench/plain.h"
#include "bench/stage.h"
#include "image/raw_header.h"
#include "image/raw_reader.h"

#include <algorithm>
#include <bit>

using namespace velmorant;

namespace
{

struct RawFormat {
    const char *name;
    StoredType type;
    bool big_endian;
};
constexpr RawFormat Formats[] = {{"read/short_big", StoredType::SignedShort, true},
                                 {"read/short_little", StoredType::SignedShort, false},
                                 {"read/unsigned_big", StoredType::UnsignedShort, true},
                                 {"read/unsigned_little", StoredType::UnsignedShort, false},
                                 {"read/float_big", StoredType::Float, true},
                                 {"read/float_little", StoredType::Float, false}};

} // namespace

// The elements of a file that holds the phantom, byte by byte.
static std::vector<std::uint8_t> encode(const bench::Study &study, const RawFormat &format)
{
    const std::size_t element_bytes = format.type == StoredType::Float ? 4 : 2;
    const float highest = *std::ranges::max_element(study.pixels);
    std::vector<std::uint8_t> bytes;
    for (const float pixel : study.pixels) {
        const std::uint32_t word = element_bytes == 4
                                       ? std::bit_cast<std::uint32_t>(pixel)
                                       : static_cast<std::uint32_t>(pixel / highest * 65535.0F);
        for (std::size_t i = 0; i < element_bytes; ++i) {
            const std::size_t place = format.big_endian ? element_bytes - 1 - i : i;
            bytes.push_back(static_cast<std::uint8_t>(word >> 8U * place));
        }
    }
    return bytes;
}

static std::vector<float> decode(const std::vector<std::uint8_t> &bytes, const RawFormat &format,
                                 float factor)
{
    return format.type == StoredType::Float
               ? bench::plain::decode_floats(bytes, format.big_endian)
               : bench::plain::decode_shorts(bytes, format.big_endian,
                                             format.type == StoredType::SignedShort, factor);
}

static void reading_stage(benchmark::State &state, const RawFormat &format)
{
    const bench::Study &study = bench::phantom_study(state);
    ImageHeader header = study.header;
    header.byte_order = format.big_endian ? 1 : 0;
    header.pixel_scaling = 40.0F;
    const ImageMatrix selector{.frame = 1, .plane = 1, .gate = 1, .data = 0, .bed = 0};
    const std::string file = bench::scratch_file("study.img");
    const std::vector<std::uint8_t> bytes = encode(study, format);
    bench::write_bytes(file, bytes);

    std::vector<float> pixels(study.pixels.size());
    const auto read = [&] {
        switch (format.type) {
        case StoredType::SignedShort:
            return read_image_planes_binary(file.c_str(), pixels.data(), header, selector);
        case StoredType::UnsignedShort:
            return read_image_planes_binary_unsigned(file.c_str(), pixels.data(), header, selector);
        case StoredType::Float:
            return read_image_planes_binary_float(file.c_str(), pixels.data(), header, selector);
        }
    };
    read();
    if (bench::check_stage(state, pixels == decode(bytes, format, 40.0F / 32700.0F))) {
        bench::time_stage(state, bytes.size(), read);
    }
}

[[maybe_unused]] static const bool registered = [] {
    for (const RawFormat &format : Formats) {
        benchmark::RegisterBenchmark(format.name, reading_stage, format)->Apply(bench::stage_sizes);
    }
    return true;
}();
