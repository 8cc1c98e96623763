// bench_cancel FOLDER TIMES: cancels a status scan of all items that many times, evenly over the time that it takes,
// and tells how long the caller then waits for the exception.

#include <HSVN/HSVN.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <exception>
#include <future>
#include <iostream>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

struct Stopper
{
    bool queryContinue(HSVNContext& /*context*/) { return !isStopped; }
    std::atomic<bool> isStopped = false;
};

class Scanner
{
  public:
    explicit Scanner(const std::string& folder) : _path{HSVNLocalPath::pathWithString(folder)}
    {
        _options->setIncludeNormalFiles(true);
    }

    /// @throws HSVNOperationCancelledException once stopped
    void scan() const { HSVNDirectory::statusForNodesInDirectoryAtPath(_path, _options, _context); }

    /// The time of a whole scan. The first is not counted: it pays for what only a process's first call does.
    Clock::duration timeOfScan() const
    {
        scan();
        const auto started = Clock::now();
        scan();
        return Clock::now() - started;
    }

    /// How long the scan goes on when it is stopped after a time; nothing when it has ended before.
    Clock::duration waitWhenStopped(Clock::duration after)
    {
        _delegate->isStopped = false;
        auto stopping = std::async(std::launch::async, [&] {
            std::this_thread::sleep_for(after);
            const auto stoppedAt = Clock::now();
            _delegate->isStopped = true;
            return stoppedAt;
        });
        try {
            scan();
        } catch (const HSVNOperationCancelledException&) {
        }
        const auto endedAt = Clock::now();
        return std::max(endedAt - stopping.get(), Clock::duration::zero());
    }

  private:
    using Delegate = HSVNClientDelegateFor<Stopper>;

    HSVNPathRef _path;
    std::shared_ptr<HSVNStatusOptions> _options = HSVNStatusOptions::defaults();
    std::shared_ptr<Delegate> _delegate = std::make_shared<Delegate>();
    HSVNContextRef _context = HSVNClient::clientWithDelegate(_delegate);
};

std::int64_t microseconds(Clock::duration time)
{
    return std::chrono::duration_cast<std::chrono::microseconds>(time).count();
}

void cancel(const std::string& folder, int times)
{
    HSVNInitialize();
    Scanner scanner{folder};
    const auto whole = scanner.timeOfScan();
    std::vector<Clock::duration> waits;
    for (int number = 1; number <= times; ++number) {
        waits.push_back(scanner.waitWhenStopped(whole * number / (times + 1)));
    }
    std::sort(waits.begin(), waits.end());
    std::cout << "scan " << microseconds(whole) << "\nmedian " << microseconds(waits[waits.size() / 2]) << "\nlongest "
              << microseconds(waits.back()) << '\n';
}

} // namespace

int main(int argc, char** argv)
{
    try {
        if (argc != 3 || std::stoi(argv[2]) < 1) {
            throw std::invalid_argument("usage: bench_cancel FOLDER TIMES");
        }
        cancel(argv[1], std::stoi(argv[2]));
        return 0;
    } catch (const std::exception& exception) {
        std::cerr << "bench_cancel: " << exception.what() << '\n';
        return 1;
    }
}
