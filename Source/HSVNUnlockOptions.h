#pragma once

#include "HSVNExport.h"
#include "HSVNOptions.h"

#include <memory>
#include <string>

/// Choices of `HSVNContext::unlock`.
struct HSVNUnlockChoices
{
    bool breakLocks = false; ///< also those that others hold, or that the working copy does not know
};

/// Choices for unlocking items.
class HSVN_EXPORT HSVNUnlockOptions : public HSVNOptionsOf<HSVNUnlockOptions>
{
  public:
    static constexpr const char* staticClassName = "HSVNUnlockOptions";

    /// Break locks that others hold. Initially `false`.
    bool breakLocks() const { return _breakLocks; }
    void setBreakLocks(bool breakLocks) { _breakLocks = breakLocks; }

    /// The same choices for the verb `unlock`.
    HSVNUnlockChoices choices() const;
    std::string description() const override;

  private:
    bool _breakLocks = false;
};

using HSVNUnlockOptionsRef = std::shared_ptr<const HSVNUnlockOptions>;
