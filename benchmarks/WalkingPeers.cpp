// SPDX-License-Identifier: MIT
#include "benchmarks/support/BenchmarkTrees.h"
#include "benchmarks/support/Comparison.h"
#include "benchmarks/support/Floors.h"
#include "benchmarks/support/WalkPeers.h"

#include <string>
#include <vector>

// What others need for the walks that Walking.cpp times, beside the same floor.
namespace {

enum class Tree { wide, narrow };

const std::string& pathOf(Tree tree)
{
    auto& trees = BenchmarkTrees::shared();
    return tree == Tree::wide ? trees.wide() : trees.narrow();
}

std::size_t countOf(Tree tree)
{
    return tree == Tree::wide ? BenchmarkTrees::entryCount() : BenchmarkTrees::narrowCount;
}

void peerLibrary(benchmark::State& state, std::size_t (*walk)(const std::string&), Tree tree)
{
    const auto& path = pathOf(tree);
    Comparison comparison(state);
    for (auto _ : state) {
        std::size_t found = 0;
        comparison.round(
            [&] { benchmark::DoNotOptimize(walkByHand(path)); }, [&] { found = walk(path); });
        if (found != countOf(tree)) {
            state.SkipWithError("the peer is not there, or its walk is not complete");
            break;
        }
    }
}

// Each is told to look at every file, as the library does.
void peerProgram(benchmark::State& state, std::vector<std::string> command, std::size_t pathPlace)
{
    const auto& path = BenchmarkTrees::shared().wide();
    command[pathPlace] = path;
    double floor = 0;
    double work = 0;
    for (auto _ : state) {
        floor += Comparison::seconds([&] { benchmark::DoNotOptimize(walkByHand(path)); });
        const double time = peers::secondsOfProgram(command);
        if (time < 0) {
            state.SkipWithError("the peer is not there, or it failed");
            return;
        }
        work += time;
        state.SetIterationTime(time);
    }
    state.counters["floor"] = floor / static_cast<double>(state.iterations());
    state.counters["ratio"] = work / floor;
}

void once(benchmark::internal::Benchmark* benchmark)
{
    benchmark->Iterations(1)->UseManualTime()->Unit(benchmark::kMillisecond);
}

BENCHMARK_CAPTURE(peerLibrary, standardWide, peers::standardLibrary, Tree::wide)->Apply(once);
BENCHMARK_CAPTURE(peerLibrary, standardNarrow, peers::standardLibrary, Tree::narrow)->Apply(once);
BENCHMARK_CAPTURE(peerLibrary, gioWide, peers::gio, Tree::wide)->Apply(once);
BENCHMARK_CAPTURE(peerLibrary, gioNarrow, peers::gio, Tree::narrow)->Apply(once);
BENCHMARK_CAPTURE(peerLibrary, qtWide, peers::qt, Tree::wide)->Apply(once);
BENCHMARK_CAPTURE(peerLibrary, qtNarrow, peers::qt, Tree::narrow)->Apply(once);
BENCHMARK_CAPTURE(peerProgram, find, { "find", "", "-printf", "%i %s %T@\n" }, 1)->Apply(once);
BENCHMARK_CAPTURE(peerProgram, bfs, { "bfs", "", "-printf", "%i %s %T@\n" }, 1)->Apply(once);
BENCHMARK_CAPTURE(
    peerProgram, fd, { "fdfind", "--unrestricted", "--changed-after", "1990-01-01", ".", "" }, 5)
    ->Apply(once);

} // namespace
