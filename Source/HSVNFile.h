#pragma once

#include "HSVNExport.h"
#include "HSVNForward.h"
#include "HSVNNode.h"

#include <memory>
#include <string>

class HSVNOutputStream;

/// A versioned file.
class HSVN_EXPORT HSVNFile : public HSVNNode
{
  public:
    HSVNFile() = default;
    using HSVNNode::HSVNNode;

    std::string className() const override { return "HSVNFile"; }
    HSVNNodeRef copy() const override;

    // Services

    /// The file at a path in a revision, with the repository's lock, and without a status record.
    ///
    /// @param path      a local path or a URL; not nil ("path != nil")
    /// @param revision  not nil ("revision != nil")
    /// @param context   not nil ("context != nil")
    /// @throws HSVNException "%@ does not exist", "Node is not a file", or for every Subversion error
    /// Stands for svn_client_list.
    static HSVNFileRef fileAtPath(const HSVNPathRef& path, const HSVNRevisionSpecRef& revision,
                                  const HSVNContextRef& context);
    /// Writes a file's contents in a revision, keywords expanded, into a stream.
    ///
    /// @param revision  not nil ("revision != nil")
    /// @param path      a local path or a URL; not nil ("path != nil")
    /// @param stream    an open stream, such as HSVNStandardOutputStream of a C++ stream, which stays open; not nil
    /// ("stream != nil")
    /// @param context   not nil ("context != nil")
    /// @throws HSVNException for every Subversion error, "Unable to write data to output stream" when the stream fails
    /// Stands for svn_client_cat2.
    static void catRevision(const HSVNRevisionSpecRef& revision, const HSVNPathRef& path,
                            const std::shared_ptr<HSVNOutputStream>& stream, const HSVNContextRef& context);
};
