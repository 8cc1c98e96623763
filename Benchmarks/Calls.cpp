// bench_calls OPERATION TARGET [Google Benchmark's options]: the call alone, through the library and through
// Subversion alone, warm and in one process. Interleave the repetitions to compare them. Subversion alone is loaded
// apart, with all that it needs, so that the library's bundle finds and leaves things as in any program.

#include "LibraryClient.h"
#include "PlainClient.h"

#include <benchmark/benchmark.h>
#include <chrono>
#include <dlfcn.h>
#include <exception>
#include <iostream>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>

namespace {

using Clock = std::chrono::steady_clock;

/// The plain client, loaded apart from everything else.
class PlainModule
{
  public:
    PlainModule()
    {
        if (_client == nullptr) {
            throw std::runtime_error("Subversion cannot be started");
        }
    }
    ~PlainModule() { function<decltype(&PlainClientClose)>("PlainClientClose")(_client); }
    PlainModule(const PlainModule&) = delete;
    PlainModule& operator=(const PlainModule&) = delete;

    long run(const std::string& operation, const std::string& target) const
    {
        return _run(_client, operation.c_str(), target.c_str());
    }

  private:
    template <class Function>
    Function function(const char* name) const
    {
        void* const found = _module == nullptr ? nullptr : dlsym(_module, name);
        if (found == nullptr) {
            throw std::runtime_error(dlerror()); // NOLINT(concurrency-mt-unsafe): no other thread loads anything
        }
        return reinterpret_cast<Function>(found);
    }

    void* _module = dlmopen(LM_ID_NEWLM, BENCH_PLAIN_MODULE, RTLD_NOW | RTLD_LOCAL);
    PlainClient* _client = function<decltype(&PlainClientOpen)>("PlainClientOpen")();
    decltype(&PlainClientRun) _run = function<decltype(&PlainClientRun)>("PlainClientRun");
};

/// What this process measures.
class Subject
{
  public:
    Subject(std::string operation, std::string target) : _operation{std::move(operation)}, _target{std::move(target)}
    {
        // Neither is to pay for what only the first call of a process does.
        callLibrary();
        callPlain();
    }

    LibraryOutcome callLibrary() const { return _library.run(_operation, _target); }

    long callPlain() const
    {
        const long items = _plain.run(_operation, _target);
        if (items < 0) {
            throw std::runtime_error("Subversion reported an error");
        }
        return items;
    }

  private:
    std::string _operation;
    std::string _target;
    LibraryClient _library;
    PlainModule _plain;
};

std::unique_ptr<const Subject> subject; // Google Benchmark hands its functions nothing of ours

void setTime(benchmark::State& state, Clock::time_point started)
{
    state.SetIterationTime(std::chrono::duration<double>(Clock::now() - started).count());
}

// Freeing the results is the caller's, and not part of the call.
void library(benchmark::State& state)
{
    while (state.KeepRunning()) {
        const auto started = Clock::now();
        const LibraryOutcome outcome = subject->callLibrary();
        setTime(state, started);
    }
}

void plain(benchmark::State& state)
{
    while (state.KeepRunning()) {
        const auto started = Clock::now();
        subject->callPlain();
        setTime(state, started);
    }
}

// The whole process's processor time: the library may use threads.
BENCHMARK(library)->UseManualTime()->MeasureProcessCPUTime()->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(plain)->UseManualTime()->MeasureProcessCPUTime()->Iterations(1)->Unit(benchmark::kMillisecond);

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
        subject = std::make_unique<const Subject>(argv[1], argv[2]);
        benchmark::RunSpecifiedBenchmarks();
        subject.reset();
        return 0;
    } catch (const std::exception& exception) {
        std::cerr << "bench_calls: " << exception.what() << '\n';
        return 1;
    }
}
