#include "bench/stage.h"

#include "examples/phantom.h"
#include "image/image_geometry.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>

namespace bench
{

const Study &phantom_study(const benchmark::State &state)
{
    static Study study;
    const auto size = [&](std::size_t axis) {
        return static_cast<std::int32_t>(state.range(axis));
    };
    const velmorant::ImageHeader &held = study.header;
    if (held.x_dim != size(0) || held.y_dim != size(1) || held.num_slices != size(2)) {
        study.header = phantom::describe(size(0), size(1), size(2), 1, 1);
        study.pixels.resize(velmorant::image_size(study.header));
        phantom::fill_volume(study.pixels.data(), study.header, 1, 0);
    }
    return study;
}

void stage_sizes(benchmark::internal::Benchmark *stage)
{
    stage->Args({64, 64, 32})->Args({128, 128, 60})->Args({256, 256, 128});
    stage->Unit(benchmark::kMicrosecond)->UseRealTime();
}

namespace
{

struct ScratchFolder {
    ScratchFolder() : path((std::filesystem::temp_directory_path() / "stage_bench.XXXXXX").string())
    {
        if (mkdtemp(path.data()) == nullptr) {
            std::perror("stage_bench: no folder for temporary files");
            std::exit(2);
        }
    }
    ~ScratchFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(path, ignored);
    }
    ScratchFolder(const ScratchFolder &) = delete;
    ScratchFolder &operator=(const ScratchFolder &) = delete;

    std::string path;
};

} // namespace

std::string scratch_file(const char *name)
{
    static const ScratchFolder folder;
    return folder.path + "/" + name;
}

void write_bytes(const std::string &path, const std::vector<std::uint8_t> &bytes)
{
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<const char *>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
}

static bool disagreement = false;

bool check_stage(benchmark::State &state, bool agrees)
{
    if (!agrees) {
        disagreement = true;
        state.SkipWithError("differs from its plain version");
    }
    return agrees;
}

bool all_stages_agree()
{
    return !disagreement;
}

double time_memcpy(std::size_t bytes)
{
    using Clock = std::chrono::steady_clock;
    std::vector<char> source(bytes, 1);
    std::vector<char> target(bytes);
    std::array<double, 11> seconds{};
    for (double &time : seconds) {
        const auto start = Clock::now();
        std::memcpy(target.data(), source.data(), bytes);
        benchmark::ClobberMemory();
        time = std::chrono::duration<double>(Clock::now() - start).count();
    }
    std::ranges::nth_element(seconds, seconds.begin() + seconds.size() / 2);
    return seconds[seconds.size() / 2];
}

} // namespace bench
