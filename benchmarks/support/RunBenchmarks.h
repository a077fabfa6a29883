#pragma once

#include <benchmark/benchmark.h>

namespace NELK
{

/// Runs the benchmarks that the command line asks for; the result is the exit code of the program.
inline int runBenchmarks(int argc, char* argv[])
{
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}

} // namespace NELK
