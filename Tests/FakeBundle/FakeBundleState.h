#pragma once

#include <atomic>

/// What a fake bundle's shared object exports under the name `HSVNFakeBundleState`: how it is to behave, and what was
/// done with it. Each copy of the shared object has its own.
struct FakeBundleState
{
    const char* version = "9.8.7"; ///< what its Subversion reports
    int missingPlace = -1;         ///< a place of the table that it leaves null
    bool startFails = false;       ///< whether it answers no table
    bool contextFails = false;     ///< whether no client context can be made
    int startMilliseconds = 0;     ///< how long its principal function takes
    std::atomic<int> starts = 0;   ///< how often its principal function was called
    std::atomic<int> pools = 0;    ///< how many pools live
};
