#include "HSVNContext.h"
#include "HSVNDirectory.h"
#include "HSVNFile.h"
#include "HSVNPlatformException.h"

HSVNNodeRef HSVNNode::nodeAtPath(const HSVNPathRef& path, const HSVNRevisionSpecRef& revision,
                                 const HSVNContextRef& context)
{
    HSVNAssertParameter(path != nullptr, "path != nil");
    HSVNAssertParameter(revision != nullptr, "revision != nil");
    HSVNAssertParameter(context != nullptr, "context != nil");
    if (isDirectoryAtPath(path, revision, context)) {
        return HSVNDirectory::directoryAtPath(path, revision, context);
    }
    return HSVNFile::fileAtPath(path, revision, context);
}
