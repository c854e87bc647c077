// SPDX-License-Identifier: MIT
#include "benchmarks/Memory.h"

#include <benchmark/benchmark.h>

int main(int argumentCount, char** arguments)
{
    if (const auto status = measureMemoryIfAsked(argumentCount, arguments))
        return *status;
    benchmark::Initialize(&argumentCount, arguments);
    if (benchmark::ReportUnrecognizedArguments(argumentCount, arguments))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
}
