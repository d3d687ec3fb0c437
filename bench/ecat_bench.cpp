// An ECAT 6 study of small planes: the visit of all its subheaders, and reading a frame.

#include "bench/stage.h"
#include "ecat/blocks.h"
#include "ecat/image_reader.h"
#include "ecat/image_writer.h"
#include "examples/phantom.h"
#include "image/image_geometry.h"
#include "prefs/settings.h"

#include <algorithm>
#include <cmath>

using namespace velmorant;

static constexpr std::int32_t Planes = 63;

namespace
{

struct EcatStudy {
    ImageHeader header;
    std::vector<float> pixels; // all frames
    std::string file;
};

} // namespace

static EcatStudy make_study(std::int32_t side, std::int32_t frames)
{
    EcatStudy study{
        phantom::describe(side, side, Planes, frames, 1), {}, bench::scratch_file("study.ecat")};
    const std::size_t size = image_size(study.header);
    study.pixels.resize(size * static_cast<std::size_t>(frames));
    for (std::int32_t frame = 1; frame <= frames; ++frame) {
        phantom::fill_volume(&study.pixels[size * static_cast<std::size_t>(frame - 1)],
                             study.header, frame, 0);
    }
    INT_MaxPixelValue = 32700;
    write_image_matrix_cti6(study.file.c_str(), study.pixels.data(), study.header, -1e30F, 0.0F);
    return study;
}

static void header_stage(benchmark::State &state)
{
    const auto frames = static_cast<std::int32_t>(state.range(0));
    const EcatStudy study = make_study(16, frames);
    ImageHeader header{};
    read_header_cti6(study.file.c_str(), header);
    if (bench::check_stage(state, header.num_frames == frames && header.num_slices == Planes &&
                                      header.x_dim == 16 && header.y_dim == 16)) {
        const std::size_t matrices = static_cast<std::size_t>(frames) * Planes;
        const double seconds = bench::time_stage(
            state, matrices * BlockBytes, [&] { read_header_cti6(study.file.c_str(), header); });
        state.counters["ns_per_matrix"] = seconds * 1e9 / static_cast<double>(matrices);
    }
}
BENCHMARK(header_stage)
    ->Name("ecat/header")
    ->Arg(4)
    ->Arg(15)
    ->Arg(30)
    ->Arg(60)
    ->Unit(benchmark::kMicrosecond)
    ->UseRealTime();

// Whether a plane's pixels are those that were written, to half a unit of its 32700.
static bool same_plane(const float *read, const float *written, std::size_t size)
{
    const float unit = *std::max_element(written, written + size) / 32700.0F;
    return std::equal(read, read + size, written,
                      [&](float a, float b) { return std::fabs(a - b) <= 0.51F * unit; });
}

static void frame_stage(benchmark::State &state)
{
    const auto side = static_cast<std::int32_t>(state.range(0));
    const EcatStudy study = make_study(side, 3);
    const std::size_t size = image_size(study.header);
    const ImageMatrix selector{.frame = 2, .plane = 1, .gate = 1, .data = 0, .bed = 0};
    std::vector<float> pixels(size);
    const auto read = [&] {
        read_image_planes_cti6(study.file.c_str(), pixels.data(), study.header, selector);
    };
    read();
    bool agrees = true;
    for (std::size_t plane = 0; plane < Planes; ++plane) {
        const std::size_t start = plane * (size / Planes);
        agrees = agrees && same_plane(&pixels[start], &study.pixels[size + start], size / Planes);
    }
    if (bench::check_stage(state, agrees)) {
        bench::time_stage(state, size * sizeof(std::int16_t), read);
    }
}
BENCHMARK(frame_stage)
    ->Name("ecat/frame")
    ->Arg(64)
    ->Arg(128)
    ->Arg(256)
    ->Unit(benchmark::kMicrosecond)
    ->UseRealTime();
