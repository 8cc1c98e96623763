#pragma once

#include "HSVNExport.h"
#include "HSVNOptions.h"

#include <memory>
#include <string>

/// Choices for locking items.
class HSVN_EXPORT HSVNLockOptions : public HSVNOptionsOf<HSVNLockOptions>
{
  public:
    static constexpr const char* staticClassName = "HSVNLockOptions";

    /// Take locks over that others hold. Initially `false`.
    bool stealLocks() const { return _stealLocks; }
    void setStealLocks(bool stealLocks) { _stealLocks = stealLocks; }

    std::string description() const override;

  private:
    bool _stealLocks = false;
};

using HSVNLockOptionsRef = std::shared_ptr<const HSVNLockOptions>;
