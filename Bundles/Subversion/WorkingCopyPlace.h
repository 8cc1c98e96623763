#pragma once

#include "SubversionLine.h"

#if HSVN_LINE_MINOR >= 7

#include <string>
#include <string_view>
#include <sys/types.h>

// Where the disk says that an item belongs, whatever an open database says.

namespace HSVNAdapter {

/// Which file a path names; zero when there is none.
struct FileIdentity
{
    dev_t device = 0;
    ino_t number = 0;
    bool operator==(const FileIdentity&) const = default;
};

FileIdentity identityOf(const std::string& file);

/// The database of the working copy with that root, whether it exists or not.
std::string databaseOf(std::string_view root, apr_pool_t* pool);

/// The nearest directory at or above a path, as far as it is written, that holds a database; empty when there is none.
std::string workingCopyRoot(std::string_view path, apr_pool_t* pool);

} // namespace HSVNAdapter

#endif
