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
    HSVNLogPathChange();
    /// A change that is no copy.
    HSVNLogPathChange(std::string path, HSVNLogAction action);
    /// A change that may be a copy.
    ///
    /// @param path          the changed item's path in the repository, such as "/trunk/file.c"
    /// @param copyPath      the path that it was copied from; nil for no copy
    /// @param copyRevision  the revision that it was copied from; `HSVNInvalidRevision` for no copy
    HSVNLogPathChange(std::string path, HSVNLogAction action, std::optional<std::string> copyPath,
                      HSVNRevisionNumber copyRevision);
    /// The same with texts that the changes of a log share; the path is not nil ("path != nil").
    HSVNLogPathChange(std::shared_ptr<const std::string> path, HSVNLogAction action,
                      std::shared_ptr<const std::string> copyPath, HSVNRevisionNumber copyRevision);

    /// What happened to the item.
    HSVNLogAction action() const { return _action; }
    void setAction(HSVNLogAction action) { _action = action; }
    /// The changed item's path in the repository, such as "/trunk/file.c".
    const std::string& path() const { return *_path; }
    void setPath(std::string path);
    /// The path that the item was copied from; nil when it was not copied.
    std::optional<std::string> copyPath() const;
    void setCopyPath(std::optional<std::string> path);
    /// The revision that the item was copied from; `HSVNInvalidRevision` when it was not copied.
    HSVNRevisionNumber copyRevision() const { return _copyRevision; }
    void setCopyRevision(HSVNRevisionNumber revision) { _copyRevision = revision; }
    /// What the item is; unknown where the line or the server does not say, as in the next two.
    HSVNNodeKind kind() const { return _kind; }
    void setKind(HSVNNodeKind kind) { _kind = kind; }
    /// Whether its text was modified; nil when not known.
    std::optional<bool> textModified() const { return _textModified; }
    void setTextModified(std::optional<bool> modified) { _textModified = modified; }
    /// Whether its properties were modified; nil when not known.
    std::optional<bool> propertiesModified() const { return _propertiesModified; }
    void setPropertiesModified(std::optional<bool> modified) { _propertiesModified = modified; }

    /// Tells the change's path from another root, as when a repository's paths are shown below a folder of their own or
    /// a branch's paths without the branch.
    ///
    /// The path becomes the given one. What both end in alike is the item; what stands before it is the old and the new
    /// root. A copy source at or below the old root is told from the new root too, any other stays.
    void adjustPath(std::string_view path);

    /// A new change with the same values; the texts are shared.
    std::shared_ptr<HSVNLogPathChange> copy() const { return std::make_shared<HSVNLogPathChange>(*this); }
    std::string className() const override { return "HSVNLogPathChange"; }

  private:
    friend class HSVNLogChanges;
    friend class HSVNLogItem;

    HSVNLogAction _action = HSVNLogActionNone;
    HSVNRevisionNumber _copyRevision = HSVNInvalidRevision;
    HSVNNodeKind _kind = HSVNNodeKindUnknown;
    std::optional<bool> _textModified;
    std::optional<bool> _propertiesModified;
    std::shared_ptr<const std::string> _path; // never nil
    std::shared_ptr<const std::string> _copyPath;
};

using HSVNLogPathChangeRef = std::shared_ptr<HSVNLogPathChange>;
