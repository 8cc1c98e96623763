#pragma once

#include "HSVNExport.h"
#include "HSVNForward.h"
#include "HSVNOptions.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

/// Choices of `HSVNContext::log`.
struct HSVNLogChoices
{
    HSVNRevisionRef pegRevision{}; ///< where the first target is looked up; nil: HEAD of a URL, else the working copy's
    /// The ranges, each in its own direction; none means all back from the peg revision, or from HEAD without one.
    std::vector<std::pair<HSVNRevisionRef, HSVNRevisionRef>> ranges{};
    int limit = 0;                                        ///< most items; 0 means all
    bool changedPaths = false;                            ///< tell which paths each revision changed
    bool stopOnCopy = false;                              ///< do not go on to what an item is a copy of
    bool mergedRevisions = false;                         ///< tell the revisions that a revision merged, too
    std::optional<std::vector<std::string>> properties{}; ///< names of the revision properties wanted; nil means all
};

/// Choices for reading the log of an item.
class HSVN_EXPORT HSVNLogOptions : public HSVNOptionsOf<HSVNLogOptions>
{
  public:
    static constexpr const char* staticClassName = "HSVNLogOptions";

    /// The initial values, as `defaults` has them.
    HSVNLogOptions();

    /// The most items to deliver; 0 means no limit. Initially `0`.
    std::int32_t limit() const { return _limit; }
    void setLimit(std::int32_t limit) { _limit = limit; }
    /// The revision in which the path is looked up. Initially `HSVNRevision::UNSPECIFIED()`.
    const HSVNRevisionRef& pegRevision() const { return _pegRevision; }
    void setPegRevision(HSVNRevisionRef revision) { _pegRevision = std::move(revision); }
    /// Start of the range. Initially `HSVNRevision::HEAD()`.
    const HSVNRevisionRef& fromRevision() const { return _fromRevision; }
    void setFromRevision(HSVNRevisionRef revision) { _fromRevision = std::move(revision); }
    /// End of the range. Initially revision 0.
    const HSVNRevisionRef& toRevision() const { return _toRevision; }
    void setToRevision(HSVNRevisionRef revision) { _toRevision = std::move(revision); }
    /// Report the paths changed in each revision. Initially `true`.
    bool discoverChangedPaths() const { return _discoverChangedPaths; }
    void setDiscoverChangedPaths(bool discover) { _discoverChangedPaths = discover; }
    /// Follow the item across copies. Initially `true`.
    bool traverseCopyHistory() const { return _traverseCopyHistory; }
    void setTraverseCopyHistory(bool traverse) { _traverseCopyHistory = traverse; }

    /// The same choices for the verb `log`.
    HSVNLogChoices choices() const;
    std::string description() const override;

  private:
    std::int32_t _limit = 0;
    HSVNRevisionRef _pegRevision;
    HSVNRevisionRef _fromRevision;
    HSVNRevisionRef _toRevision;
    bool _discoverChangedPaths = true;
    bool _traverseCopyHistory = true;
};

using HSVNLogOptionsRef = std::shared_ptr<const HSVNLogOptions>;
