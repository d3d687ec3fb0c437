#pragma once

// What the benchmarks of all stages share: the study that a stage works on, the check of its result,
// and its timing.

#include "image/image_header.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

namespace bench
{

struct Study {
    velmorant::ImageHeader header;
    std::vector<float> pixels; // one volume
};

// The phantom in the benchmark's size, x, y and slices. Kept until another size is asked for.
const Study &phantom_study(const benchmark::State &state);

// The sizes that each stage is timed at.
void stage_sizes(benchmark::internal::Benchmark *stage);

// A file of this process, in its folder of temporary files, which is removed at its end.
std::string scratch_file(const char *name);

// Creates a file that holds the bytes.
void write_bytes(const std::string &path, const std::vector<std::uint8_t> &bytes);

// Notes that a stage's result is not that of its plain version: it isn't timed, and the program ends
// with status 1. Returns `agrees`.
bool check_stage(benchmark::State &state, bool agrees);
bool all_stages_agree();

// Seconds that a memcpy of so many bytes takes: the median of several.
double time_memcpy(std::size_t bytes);

// Runs a stage again and again. Returns the seconds that one round takes.
template <class Stage>
double time_rounds(benchmark::State &state, Stage stage)
{
    using Clock = std::chrono::steady_clock;
    const auto start = Clock::now();
    for ([[maybe_unused]] auto round : state) {
        stage();
        benchmark::ClobberMemory();
    }
    const std::chrono::duration<double> taken = Clock::now() - start;
    return taken.count() / static_cast<double>(state.iterations());
}

// Times a stage that takes in `bytes` bytes. Reports bytes a second, and as "of_memcpy" its time in
// units of that of a memcpy of as many bytes. Returns its seconds.
template <class Stage>
double time_stage(benchmark::State &state, std::size_t bytes, Stage stage)
{
    const double memcpy_seconds = time_memcpy(bytes);
    const double seconds = time_rounds(state, stage);
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(bytes));
    state.counters["of_memcpy"] = seconds / memcpy_seconds;
    return seconds;
}

} // namespace bench
