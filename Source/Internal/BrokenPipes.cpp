#include "Internal/BrokenPipes.h"

#include <cerrno>
#include <csignal>
#include <ctime>

namespace {

sigset_t brokenPipe()
{
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGPIPE);
    return signals;
}

} // namespace

// The signal is sent to the thread that writes. What the process does with it otherwise is the application's choice.

HSVNBrokenPipes::HSVNBrokenPipes()
{
    const auto signals = brokenPipe();
    sigset_t former;
    sigemptyset(&former);
    pthread_sigmask(SIG_BLOCK, &signals, &former);
    _wasBlocked = sigismember(&former, SIGPIPE) == 1;
}

HSVNBrokenPipes::~HSVNBrokenPipes()
{
    if (_wasBlocked) {
        return;
    }
    const int error = errno;
    const auto signals = brokenPipe();
    const timespec none{};
    while (sigtimedwait(&signals, nullptr, &none) < 0 && errno == EINTR) {
    }
    pthread_sigmask(SIG_UNBLOCK, &signals, nullptr);
    errno = error;
}
