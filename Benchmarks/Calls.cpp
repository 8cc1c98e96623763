// bench_calls OPERATION TARGET [Google Benchmark's options]: the call alone, through the library and through
// Subversion alone, warm and in one process. Interleave the repetitions to compare them.

#include "LibraryClient.h"
#include "PlainClient.h"

#include <benchmark/benchmark.h>
#include <chrono>
#include <exception>
#include <iostream>
#include <stdexcept>
#include <string>

namespace {

using Clock = std::chrono::steady_clock;

void setTime(benchmark::State& state, Clock::time_point started)
{
    state.SetIterationTime(std::chrono::duration<double>(Clock::now() - started).count());
}

// Freeing the results is the caller's, and not part of the call.
void measureLibrary(benchmark::State& state, const LibraryClient& client, const std::string& operation,
                    const std::string& target)
{
    try {
        for (auto _ : state) {
            const auto started = Clock::now();
            const LibraryOutcome outcome = client.run(operation, target);
            setTime(state, started);
            state.counters["items"] = static_cast<double>(outcome.items);
        }
    } catch (const std::exception& exception) {
        state.SkipWithError(exception.what());
    }
}

void measurePlain(benchmark::State& state, PlainClient* client, const std::string& operation, const std::string& target)
{
    for (auto _ : state) {
        const auto started = Clock::now();
        const long items = PlainClientRun(client, operation.c_str(), target.c_str());
        setTime(state, started);
        state.counters["items"] = static_cast<double>(items);
        if (items < 0) {
            state.SkipWithError("Subversion reported an error");
        }
    }
}

template <class Measurement>
void add(const char* name, Measurement measurement)
{
    benchmark::RegisterBenchmark(name, measurement)->UseManualTime()->Iterations(1)->Unit(benchmark::kMillisecond);
}

void run(const std::string& operation, const std::string& target)
{
    const LibraryClient library;
    PlainClient* plain = PlainClientOpen();
    if (!plain) {
        throw std::runtime_error("Subversion does not start");
    }
    // Neither is to pay for what only the first call of a process does.
    library.run(operation, target);
    PlainClientRun(plain, operation.c_str(), target.c_str());
    add("library", [&](benchmark::State& state) { measureLibrary(state, library, operation, target); });
    add("plain", [&](benchmark::State& state) { measurePlain(state, plain, operation, target); });
    benchmark::RunSpecifiedBenchmarks();
    PlainClientClose(plain);
}

} // namespace

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    if (argc != 3) {
        std::cerr << "usage: bench_calls OPERATION TARGET [--benchmark_repetitions=N "
                     "--benchmark_enable_random_interleaving=true ...]\n";
        return 2;
    }
    try {
        run(argv[1], argv[2]);
        return 0;
    } catch (const std::exception& exception) {
        std::cerr << "bench_calls: " << exception.what() << '\n';
        return 1;
    }
}
