#include "HSVNContext.h"
#include "Internal/Operation.h"
#include "Internal/Text.h"

std::optional<std::string> HSVNContext::URLOfTarget(const HSVNTarget& target)
{
    HSVNOperation operation{*this, "URLOfTarget", {{"target", target.text()}}};
    const auto find = operation.extension(&HSVNBundleExtensions::client_url_from_path);
    const char* url = nullptr;
    operation.check(find(&url, operation.cString(target.text()), operation.pool()));
    return HSVNTextOrNil(url);
}
