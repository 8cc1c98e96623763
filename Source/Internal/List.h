#pragma once

#include "HSVNReadingChoices.h"
#include "Internal/Operation.h"
#include "Internal/SharedText.h"

/// Makes the nodes of a listing. Keeps what neighbouring items share: their directory and the authors' names.
class HSVNListedNodeMaker
{
  public:
    /// @param path  the directory that is listed
    /// @param url   its place in the repository; nil when it is not known
    HSVNListedNodeMaker(HSVNPathRef path, HSVNURLRef url);

    /// The node of an item below the directory.
    ///
    /// @param name  its path from there
    HSVNNodeRef makeNode(const char* name, const svn_dirent_t& dirent, const svn_lock_t* lock);
    /// The node of the listed item itself.
    ///
    /// @param name  to show; a file's own is not what the path ends in when it was renamed since the revision listed
    HSVNNodeRef makeNodeOfTarget(const std::string& name, const svn_dirent_t& dirent, const svn_lock_t* lock);

  private:
    HSVNPathRef _path;
    HSVNURLRef _url;
    bool _isURL;
    HSVNTextCache _authors;
    HSVNPathRef _location; // of the last item
};

/// Lists a repository's directory, or one file, for `HSVNContext::list`.
///
/// @throws HSVNUnsupportedFeatureException for choices that a line before 1.10 does not have
void HSVNList(HSVNOperation& operation, const std::string& target, const HSVNRevisionSpec& revision,
              const HSVNListChoices& choices, const HSVNReceiver<const HSVNNodeRef&>& receiver);
