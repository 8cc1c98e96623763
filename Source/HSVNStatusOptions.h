#pragma once

#include "HSVNExport.h"
#include "HSVNForward.h"
#include "HSVNOptions.h"
#include "HSVNTypes.h"

#include <memory>
#include <string>
#include <utility>
#include <vector>

/// Choices of `HSVNContext::status`.
struct HSVNStatusChoices
{
    HSVNDepth depth = HSVNDepthUnknown;     ///< unknown means all that the working copy has
    bool getAll = false;                    ///< unchanged items, too
    bool contactRepository = false;         ///< compare with the repository, too
    HSVNRevisionRef revision{};             ///< what it is compared at; nil means HEAD
    bool matchIgnorePatterns = true;        ///< leave ignored items out
    bool processExternals = true;           ///< go on into externals
    std::vector<std::string> changelists{}; ///< only items of these; none means all
    /// Threads that may work on it, the caller's among them, which alone hears anything: 1 forbids others; 0 leaves the
    /// number to the library, which takes no other for a small working copy. More than there are processors, or than
    /// four, are not taken. Only 1.14 has a use for others, where the repository is not asked.
    unsigned threads = 0;
};

/// Choices for a status scan of a working copy.
class HSVN_EXPORT HSVNStatusOptions : public HSVNOptionsOf<HSVNStatusOptions>
{
  public:
    static constexpr const char* staticClassName = "HSVNStatusOptions";

    /// The initial values, as `defaults` has them.
    HSVNStatusOptions();

    /// The revision to compare against the repository. Initially `HSVNRevision::UNSPECIFIED()`.
    const HSVNRevisionRef& revision() const { return _revision; }
    void setRevision(HSVNRevisionRef revision) { _revision = std::move(revision); }
    /// Scan the whole tree below the path. Initially `true`.
    bool recursive() const { return _recursive; }
    void setRecursive(bool recursive) { _recursive = recursive; }
    /// Report unchanged items too. Initially `false`.
    bool includeNormalFiles() const { return _includeNormal; }
    void setIncludeNormalFiles(bool includeNormal) { _includeNormal = includeNormal; }
    /// Ask the repository what is out of date. Initially `false`.
    bool compareAgainstRepository() const { return _compareAgainstRepository; }
    void setCompareAgainstRepository(bool compare) { _compareAgainstRepository = compare; }
    /// Leave ignored items out. Initially `true`.
    bool respectIgnoreProperties() const { return _respectIgnoreProperties; }
    void setRespectIgnoreProperties(bool respect) { _respectIgnoreProperties = respect; }
    /// Scan externals too. Initially `true`.
    bool processExternals() const { return _processExternals; }
    void setProcessExternals(bool processExternals) { _processExternals = processExternals; }
    /// Combine each item's status into its ancestors up to the scanned path. Initially `false`.
    bool propagateStatusToAncestor() const { return _propagateStatusToAncestor; }
    void setPropagateStatusToAncestor(bool propagate) { _propagateStatusToAncestor = propagate; }
    /// Keep the files that a conflict leaves beside its item among the results. Initially `true`.
    bool includeConflictVersionFiles() const { return _includeConflictVersionFiles; }
    void setIncludeConflictVersionFiles(bool include) { _includeConflictVersionFiles = include; }

    /// The same choices for the verb `status`, which has no word for the last two.
    HSVNStatusChoices choices() const;
    std::string description() const override;

  private:
    HSVNRevisionRef _revision;
    bool _recursive = true;
    bool _includeNormal = false;
    bool _compareAgainstRepository = false;
    bool _respectIgnoreProperties = true;
    bool _processExternals = true;
    bool _propagateStatusToAncestor = false;
    bool _includeConflictVersionFiles = true;
};

using HSVNStatusOptionsRef = std::shared_ptr<const HSVNStatusOptions>;
