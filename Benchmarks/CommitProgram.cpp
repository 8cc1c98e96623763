// bench_commits FILE TIMES: commits a file of a working copy, changed, that many times in one process, and tells how
// long the first of the commits and the last one take.

#include <HSVN/HSVN.h>

#include <chrono>
#include <exception>
#include <fstream>
#include <iostream>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

Clock::duration timeOfCommit(HSVNContext& context, const std::string& file, int number)
{
    std::ofstream{file, std::ios::app} << "line " << number << '\n';
    const auto started = Clock::now();
    if (context.commit(file, {.message = "a line"}).revision == HSVNInvalidRevision) {
        throw std::runtime_error("nothing was committed");
    }
    return Clock::now() - started;
}

void commit(const std::string& file, int times)
{
    HSVNInitialize();
    const auto context = HSVNClient::clientWithDelegate(nullptr);
    std::vector<Clock::duration> taken;
    for (int number = 1; number <= times; ++number) {
        taken.push_back(timeOfCommit(*context, file, number));
    }
    const auto microseconds = [](Clock::duration time) {
        return std::chrono::duration_cast<std::chrono::microseconds>(time).count();
    };
    std::cout << "first " << microseconds(taken.front()) << "\nlast " << microseconds(taken.back()) << '\n';
}

} // namespace

int main(int argc, char** argv)
{
    try {
        if (argc != 3 || std::stoi(argv[2]) < 1) {
            throw std::invalid_argument("usage: bench_commits FILE TIMES");
        }
        commit(argv[1], std::stoi(argv[2]));
        return 0;
    } catch (const std::exception& exception) {
        std::cerr << "bench_commits: " << exception.what() << '\n';
        return 1;
    }
}
