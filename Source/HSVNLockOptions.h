#pragma once

#include "HSVNExport.h"
#include "HSVNOptions.h"

#include <memory>
#include <optional>
#include <string>

/// Choices of `HSVNContext::lock`.
struct HSVNLockChoices
{
    std::optional<std::string> comment{}; ///< UTF-8; nil for none
    bool steal = false;                   ///< also take locks that others hold
};

/// Choices for locking items.
class HSVN_EXPORT HSVNLockOptions : public HSVNOptionsOf<HSVNLockOptions>
{
  public:
    static constexpr const char* staticClassName = "HSVNLockOptions";

    /// Take locks over that others hold. Initially `false`.
    bool stealLocks() const { return _stealLocks; }
    void setStealLocks(bool stealLocks) { _stealLocks = stealLocks; }

    /// The same choices for the verb `lock`.
    HSVNLockChoices choices() const;
    std::string description() const override;

  private:
    bool _stealLocks = false;
};

using HSVNLockOptionsRef = std::shared_ptr<const HSVNLockOptions>;
