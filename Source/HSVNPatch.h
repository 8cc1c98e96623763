#pragma once

#include "HSVNExport.h"
#include "HSVNForward.h"
#include "HSVNObject.h"
#include "HSVNPatchItem.h"
#include "HSVNReceiver.h"
#include "HSVNTarget.h"

#include <memory>
#include <string>
#include <vector>

class HSVNPatch;
using HSVNPatchRef = std::shared_ptr<const HSVNPatch>;

/// How a patch is read.
struct HSVNPatchReadingChoices
{
    bool ignoreWhitespace = false; ///< the common lines of hunks may lack the blank before them
};

/// A patch in the unified format, with Subversion's or Git's headers, or without any: what `HSVNContext::patch` applies
/// and `HSVNContext::diff` writes.
///
/// Items are read one by one, and their hunks and properties when they are asked for, so that a patch of any size takes
/// little memory, and so does one that somebody made to do harm. What is no patch has no items. The text counts as
/// Subversion counts it: which lines are headers, and how far a hunk goes, follow the rules of
/// svn_diff_parse_next_patch.
///
/// Immutable; any thread; needs no bundle.
class HSVN_EXPORT HSVNPatch : public HSVNObject
{
  public:
    /// The patch in a file, which stays open as long as the object or anything read from it is there. What is no
    /// regular file, such as a pipe, is copied to a temporary one.
    ///
    /// @param path  a local path
    /// @throws HSVNException with the system's code when it cannot be read
    static HSVNPatchRef patchAtPath(const HSVNTarget& path);
    /// The patch in a text.
    static HSVNPatchRef patchWithText(std::string text);

    /// Hands the items over in order, until the receiver stops.
    ///
    /// @param receiver  not nil ("receiver != nil")
    /// @throws HSVNGenericException when the file has changed since it was opened
    void readItems(const HSVNReceiver<const HSVNPatchItem&>& receiver,
                   const HSVNPatchReadingChoices& choices = {}) const;
    /// The same, all items at once.
    std::vector<HSVNPatchItem> items(const HSVNPatchReadingChoices& choices = {}) const;

    /// Writes the patch as it was read.
    ///
    /// @param receiver  takes the text piece by piece; not nil ("receiver != nil")
    void write(const HSVNContentsReceiver& receiver) const;
    /// Writes the patch without Git's headers, as Subversion does: names below the target, a copy by its own name, and
    /// a sentence in place of a binary file's contents, but without its type, which Git's form does not tell.
    ///
    /// @param receiver  as for `write`
    void writeUnified(const HSVNContentsReceiver& receiver) const;

    std::string className() const override { return "HSVNPatch"; }

  protected:
    explicit HSVNPatch(std::shared_ptr<const HSVNPatchSource> source) : _source{std::move(source)} {}

  private:
    std::shared_ptr<const HSVNPatchSource> _source;
};
