#pragma once

#include "HSVNExport.h"

#include <string>
#include <vector>

/// Finds what a batch or a copy on disk had set aside when its program was ended: directories ".hsvn-" with six
/// characters, in each of which an item lies under its own name. Works without Subversion; directories that cannot be
/// read are passed over, as are administrative areas.
///
/// @param directory  a local path
/// @return the directories' paths
HSVN_EXPORT std::vector<std::string> HSVNFindItemsSetAside(const std::string& directory);
