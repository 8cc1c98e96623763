#include "HSVNTypes.h"

const char* HSVNTextOfDepth(HSVNDepth depth)
{
    switch (depth) {
    case HSVNDepthExclude:
        return "exclude";
    case HSVNDepthEmpty:
        return "empty";
    case HSVNDepthFiles:
        return "files";
    case HSVNDepthImmediates:
        return "immediates";
    case HSVNDepthInfinity:
        return "infinity";
    case HSVNDepthUnknown:
        break;
    }
    return "unknown";
}

const char* HSVNTextOfNodeKind(HSVNNodeKind kind)
{
    switch (kind) {
    case HSVNNodeKindNone:
        return "none";
    case HSVNNodeKindFile:
        return "file";
    case HSVNNodeKindDirectory:
        return "directory";
    case HSVNNodeKindUnknown:
        break;
    }
    return "unknown";
}
