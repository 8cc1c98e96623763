#pragma once

#include "HSVNExport.h"
#include "HSVNOptions.h"

#include <memory>
#include <string>

/// Choices for unlocking items.
class HSVN_EXPORT HSVNUnlockOptions : public HSVNOptionsOf<HSVNUnlockOptions>
{
  public:
    static constexpr const char* staticClassName = "HSVNUnlockOptions";

    /// Break locks that others hold. Initially `false`.
    bool breakLocks() const { return _breakLocks; }
    void setBreakLocks(bool breakLocks) { _breakLocks = breakLocks; }

    std::string description() const override;

  private:
    bool _breakLocks = false;
};

using HSVNUnlockOptionsRef = std::shared_ptr<const HSVNUnlockOptions>;
