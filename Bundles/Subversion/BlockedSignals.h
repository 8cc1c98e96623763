#pragma once

#include <csignal>
#include <pthread.h>

namespace HSVNAdapter {

/// All signals blocked while it lives; a thread made meanwhile keeps them blocked.
class BlockedSignals
{
  public:
    BlockedSignals()
    {
        sigset_t all;
        sigfillset(&all);
        pthread_sigmask(SIG_SETMASK, &all, &_before);
    }
    ~BlockedSignals() { pthread_sigmask(SIG_SETMASK, &_before, nullptr); }
    BlockedSignals(const BlockedSignals&) = delete;
    BlockedSignals& operator=(const BlockedSignals&) = delete;

  private:
    sigset_t _before{};
};

} // namespace HSVNAdapter
