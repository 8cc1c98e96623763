#pragma once

#include "HSVNExport.h"
#include "HSVNOptions.h"
#include "HSVNTypes.h"

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

/// Choices of `HSVNContext::commit`.
struct HSVNCommitChoices
{
    HSVNDepth depth = HSVNDepthInfinity;    ///< how far below the targets
    bool keepLocks = false;                 ///< of what is committed; they are released otherwise
    bool keepChangelists = false;           ///< leave what is committed in its changelist
    bool includeExternals = false;          ///< those of the repository without a fixed revision, too
    std::vector<std::string> changelists{}; ///< only members of these; none means all items
    std::optional<std::string> message{};   ///< the log message, UTF-8; nil asks the delegate
    std::map<std::string, std::string>
        revisionProperties{}; ///< further ones by name, values as bytes; none of Subversion's own
};

/// Choices for a commit.
class HSVN_EXPORT HSVNCommitOptions : public HSVNOptionsOf<HSVNCommitOptions>
{
  public:
    static constexpr const char* staticClassName = "HSVNCommitOptions";

    /// Release the locks held on the committed items. Initially `true`.
    bool releaseLocks() const { return _releaseLocks; }
    void setReleaseLocks(bool releaseLocks) { _releaseLocks = releaseLocks; }
    /// How deep to commit below the given paths. Initially `HSVNDepthUnknown`.
    HSVNDepth depth() const { return _depth; }
    void setDepth(HSVNDepth depth) { _depth = depth; }

    /// The same choices for the verb `commit`.
    HSVNCommitChoices choices() const;
    std::string description() const override;

  private:
    bool _releaseLocks = true;
    HSVNDepth _depth = HSVNDepthUnknown;
};

using HSVNCommitOptionsRef = std::shared_ptr<const HSVNCommitOptions>;
