#pragma once

#include "HSVNExport.h"
#include "HSVNOptions.h"

#include <memory>
#include <string>

/// Choices for deleting items.
class HSVN_EXPORT HSVNDeleteOptions : public HSVNOptionsOf<HSVNDeleteOptions>
{
  public:
    static constexpr const char* staticClassName = "HSVNDeleteOptions";

    /// Delete modified and unversioned items too. Initially `false`.
    bool force() const { return _force; }
    void setForce(bool force) { _force = force; }

    std::string description() const override;

  private:
    bool _force = false;
};

using HSVNDeleteOptionsRef = std::shared_ptr<const HSVNDeleteOptions>;
