// stage_bench [GOOGLE BENCHMARK'S OPTIONS]: checks and times the stages of a run.
// Ends with status 1 where a stage's result was not that of its plain version.

#include "bench/stage.h"

int main(int argc, char **argv)
{
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 2;
    }
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return bench::all_stages_agree() ? 0 : 1;
}
