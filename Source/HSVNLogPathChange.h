#pragma once

#include "HSVNExport.h"
#include "HSVNLogAction.h"
#include "HSVNObject.h"
#include "HSVNTypes.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

/// One path that a revision changed, with the source of the copy when it was copied.
class HSVN_EXPORT HSVNLogPathChange : public HSVNObject
{
  public:
    /// No action, an empty path, no copy source.
    HSVNLogPathChange() = default;
    /// A change that is no copy.
    HSVNLogPathChange(std::string path, HSVNLogAction action) : _action{action}, _path{std::move(path)} {}
    HSVNLogPathChange(std::string path, HSVNLogAction action, std::optional<std::string> copyPath,
                      HSVNRevisionNumber copyRevision)
        : _action{action}, _copyRevision{copyRevision}, _path{std::move(path)}, _copyPath{std::move(copyPath)}
    {
    }

    HSVNLogAction action() const { return _action; }
    void setAction(HSVNLogAction action) { _action = action; }
    /// The changed item's path in the repository, such as "/trunk/file.c".
    const std::string& path() const { return _path; }
    void setPath(std::string path) { _path = std::move(path); }
    /// The path that the item was copied from; nil when it was not copied.
    const std::optional<std::string>& copyPath() const { return _copyPath; }
    void setCopyPath(std::optional<std::string> path) { _copyPath = std::move(path); }
    /// The revision that the item was copied from; `HSVNInvalidRevision` when it was not copied.
    HSVNRevisionNumber copyRevision() const { return _copyRevision; }
    void setCopyRevision(HSVNRevisionNumber revision) { _copyRevision = revision; }

    /// Tells the change's path from another root, as when a repository's paths are shown below a folder of their own or
    /// a branch's paths without the branch.
    ///
    /// The path becomes the given one. What both end in alike is the item; what stands before it is the old and the new
    /// root. A copy source at or below the old root is told from the new root too, any other stays.
    void adjustPath(std::string_view path);

    std::shared_ptr<HSVNLogPathChange> copy() const { return std::make_shared<HSVNLogPathChange>(*this); }
    std::string className() const override { return "HSVNLogPathChange"; }

  private:
    HSVNLogAction _action = HSVNLogActionNone;
    HSVNRevisionNumber _copyRevision = HSVNInvalidRevision;
    std::string _path;
    std::optional<std::string> _copyPath;
};

using HSVNLogPathChangeRef = std::shared_ptr<HSVNLogPathChange>;
