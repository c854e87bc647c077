// SPDX-License-Identifier: MIT
#pragma once

#include <benchmark/benchmark.h>

#include <cstddef>
#include <ctime>

/// Times the library's work and, in turns with it, the floor: the system calls that nobody can do
/// without, made by hand and with nothing kept of what they say.
///
/// The benchmark has to use manual time. Its own time is that of the work; the counters `floor`, in
/// seconds, and `ratio` stand beside it. All are processor time of the calling thread, the system's
/// part included: warm, none of this ever waits, and what other programs do meanwhile stays out.
class Comparison {
public:
    explicit Comparison(benchmark::State& state)
        : _state(state)
    {
    }

    ~Comparison()
    {
        if (!_rounds)
            return;
        _state.counters["floor"] = _floor / static_cast<double>(_rounds);
        _state.counters["ratio"] = _work / _floor;
    }

    Comparison(const Comparison&) = delete;
    Comparison& operator=(const Comparison&) = delete;

    /// Runs one round; `prepare` is run before `work` and is not timed.
    template <typename Floor, typename Prepare, typename Work>
    void round(Floor&& floor, Prepare&& prepare, Work&& work)
    {
        _floor += seconds(floor);
        prepare();
        const double time = seconds(work);
        _work += time;
        ++_rounds;
        _state.SetIterationTime(time);
    }

    template <typename Floor, typename Work> void round(Floor&& floor, Work&& work)
    {
        round(
            floor, [] {}, work);
    }

    /// What `action` needs of the processor.
    template <typename Action> static double seconds(Action&& action)
    {
        const double start = processorSeconds();
        action();
        return processorSeconds() - start;
    }

private:
    static double processorSeconds()
    {
        std::timespec time{};
        ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
    }

    benchmark::State& _state;
    double _floor = 0;
    double _work = 0;
    std::size_t _rounds = 0;
};
