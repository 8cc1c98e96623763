#include "HSVNItemsSetAside.h"

#include "HSVNDirectory.h"
#include "HSVNLocalPath.h"
#include "Internal/FileManager.h"

std::vector<std::string> HSVNFindItemsSetAside(const std::string& directory)
{
    const auto area = HSVNDirectory::adminAreaInWorkingCopyAtPath(HSVNLocalPath::pathWithString(directory));
    return HSVNSetAsideItem::left(directory, area->lastComponent());
}
