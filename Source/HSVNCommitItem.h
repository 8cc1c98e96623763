#pragma once

#include "HSVNExport.h"
#include "HSVNForward.h"
#include "HSVNObject.h"
#include "HSVNTypes.h"

#include <cstdint>
#include <memory>
#include <string>
#include <utility>

struct svn_client_commit_item2_t;

/// What a commit does to an item. The bits combine; they are the library's own, not Subversion's.
enum HSVNCommitAction : std::uint32_t
{
    HSVNCommitActionAdd = 1,
    HSVNCommitActionDelete = 2,
    HSVNCommitActionCopy = 4,               ///< added with history
    HSVNCommitActionTextModified = 8,       ///< text is sent
    HSVNCommitActionPropertiesModified = 16 ///< properties are sent
};

/// A set of commit actions: their bitwise union.
using HSVNCommitActions = std::uint32_t;

/// One item that a commit, or a move, copy or delete in the repository, is about to change: what the application is
/// shown when it is asked for a log message. A plain object with setters and no lock.
class HSVN_EXPORT HSVNCommitItem : public HSVNObject
{
  public:
    /// Every object nil, revision `HSVNInvalidRevision`, kind unknown, no lock, no actions.
    HSVNCommitItem() = default;

    std::string className() const override { return "HSVNCommitItem"; }
    std::string description() const override;
    /// A new item with the same values; objects are shared.
    HSVNCommitItemRef copy() const { return std::make_shared<HSVNCommitItem>(*this); }

    /// Where the item is in a working copy; nil for an item of the repository alone.
    const HSVNLocalPathRef& path() const { return _path; }
    void setPath(HSVNLocalPathRef path) { _path = std::move(path); }
    /// Where the item is in the repository; nil when not known.
    const HSVNURLRef& URL() const { return _url; }
    void setURL(HSVNURLRef url) { _url = std::move(url); }
    /// The revision that the change is based on.
    HSVNRevisionNumber revision() const { return _revision; }
    void setRevision(HSVNRevisionNumber revision) { _revision = revision; }
    /// What the item is a copy of; nil unless it is added with history.
    const HSVNPathWithRevisionRef& copySource() const { return _copySource; }
    void setCopySource(HSVNPathWithRevisionRef source) { _copySource = std::move(source); }
    /// Whether the item is a file or a folder.
    HSVNNodeKind nodeKind() const { return _nodeKind; }
    void setNodeKind(HSVNNodeKind kind) { _nodeKind = kind; }
    /// Whether the item carries a lock token.
    bool isLocked() const { return _locked; }
    void setIsLocked(bool locked) { _locked = locked; }
    /// What the commit does to the item.
    HSVNCommitActions actions() const { return _actions; }
    void setActions(HSVNCommitActions actions) { _actions = actions; }

    // Construction

    /// The item that Subversion describes to its log-message callback.
    ///
    /// @param item  not null ("item != NULL"); read, not kept. A URL that does not parse is escaped first.
    /// @throws HSVNInvalidArgumentException when a URL does not parse for all that
    static HSVNCommitItemRef commitItemForSVNCommitItem(const svn_client_commit_item2_t* item);
    /// What a commit would do to an item with that status; path, URL and kind stay unset.
    ///
    /// @param status  not nil ("status != nil")
    /// @return nil for an item that would not be committed
    static HSVNCommitItemRef commitItemForStatus(const HSVNStatusRef& status);
    /// What a commit would do to a node.
    ///
    /// @param node  not nil ("node != nil")
    /// @return nil for a node that would not be committed
    /// @throws an assertion "status != nil" for a node without a status record
    static HSVNCommitItemRef commitItemForNode(const HSVNNodeRef& node);

  private:
    HSVNLocalPathRef _path;
    HSVNURLRef _url;
    HSVNRevisionNumber _revision = HSVNInvalidRevision;
    HSVNPathWithRevisionRef _copySource;
    HSVNNodeKind _nodeKind = HSVNNodeKindUnknown;
    bool _locked = false;
    HSVNCommitActions _actions = 0;
};
