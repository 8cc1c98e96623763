#pragma once

#include "StandIns.h"

#ifdef HSVN_STANDS_IN_FRONT

#include "FoldersAhead.h"

namespace HSVNAdapter {

/// From where the status walks of the calling thread have their folders, for as long as the object lives.
class WalkedFolders
{
  public:
    /// @param ahead  null: each is read from the disk when the walk comes to it
    explicit WalkedFolders(FoldersAhead* ahead);
    ~WalkedFolders();
    WalkedFolders(const WalkedFolders&) = delete;
    WalkedFolders& operator=(const WalkedFolders&) = delete;

  private:
    FoldersAhead* const _before;
};

} // namespace HSVNAdapter

#endif
