#pragma once

#include "SubversionLine.h"

#include <string>

namespace HSVNAdapter {

/// Makes the URLs of a walk's items: each is that of its folder, which neighbours share, and the encoded name.
class ItemURLs
{
  public:
    /// @param root          URL of the repository
    /// @param relativePath  of the item in the repository, as Subversion keeps it
    /// @return the URL, until the next call
    const char* url(const char* root, const char* relativePath, apr_pool_t* pool);

  private:
    std::string _root;
    std::string _folder; ///< with its slash
    std::string _folderURL;
    std::string _url;
};

} // namespace HSVNAdapter
