#pragma once

#include "HSVNExport.h"
#include "HSVNPatch.h"

#include <memory>
#include <string>

class HSVNTreeDiff;
using HSVNTreeDiffRef = std::shared_ptr<const HSVNTreeDiff>;

/// How two trees differ, item by item: what `HSVNContext::treeDiff` answers. It is read from Subversion's own text,
/// which it holds in a temporary file, so that what it tells is what `HSVNContext::diff` shows; names are UTF-8,
/// whatever the locale, except where a line before 1.11 wrote them.
///
/// An item that has neither text nor properties on either side, such as a directory
/// that was made, is not in the text.
///
/// Immutable; any thread; needs no bundle any more.
class HSVN_EXPORT HSVNTreeDiff : public HSVNPatch
{
  public:
    /// For the library's own use; `HSVNContext::treeDiff` makes them.
    HSVNTreeDiff(std::shared_ptr<const HSVNPatchSource> source, bool knowsCopySources);

    /// Whether the text tells what was copied and moved from where; otherwise such items are told as additions. It does
    /// not with a context's line before 1.7, which has no Git headers, and neither of the local changes of a working
    /// copy below the repository's root where Subversion loses the source of a copy, as its own "svn diff --git" does.
    bool knowsCopySources() const { return _knowsCopySources; }

    std::string className() const override { return "HSVNTreeDiff"; }

  private:
    bool _knowsCopySources;
};
