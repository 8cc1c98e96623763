#include "HSVNLocalPath.h"
#include "HSVNPlatformException.h"
#include "HSVNURL.h"

#include <fmt/format.h>

HSVNURLRef HSVNLocalPath::URL() const
{
    if (!_path.starts_with('/')) {
        throw HSVNInvalidArgumentException(fmt::format("\"{}\" is not an absolute path", _path));
    }
    return HSVNURL::URLEncodeString("file://" + _path);
}
