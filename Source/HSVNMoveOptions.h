#pragma once

#include "HSVNExport.h"
#include "HSVNOptions.h"

#include <map>
#include <memory>
#include <optional>
#include <string>

/// Choices of `HSVNContext::move`.
struct HSVNMoveChoices
{
    bool asChild = false;     ///< into the destination when that exists
    bool makeParents = false; ///< make missing parents of the destination
    /// Move directories whose items are of several revisions, too; lines before 1.8 move them in any case.
    bool allowMixedRevisions = false;
    std::optional<std::string> message{}; ///< the log message, UTF-8; nil asks the delegate
    std::map<std::string, std::string>
        revisionProperties{}; ///< further ones by name, values as bytes; none of Subversion's own
};

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
