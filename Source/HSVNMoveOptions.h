#pragma once

#include "HSVNExport.h"
#include "HSVNOptions.h"

#include <memory>
#include <string>

/// Choices for moving items.
class HSVN_EXPORT HSVNMoveOptions : public HSVNOptionsOf<HSVNMoveOptions>
{
  public:
    static constexpr const char* staticClassName = "HSVNMoveOptions";

    /// Move items with local changes too. Initially `false`.
    bool force() const { return _force; }
    void setForce(bool force) { _force = force; }

    std::string description() const override;

  private:
    bool _force = false;
};

using HSVNMoveOptionsRef = std::shared_ptr<const HSVNMoveOptions>;
