#include "HSVNContext.h"
#include "Internal/Operation.h"
#include "Internal/Text.h"

std::optional<std::string> HSVNContext::URLOfTarget(const HSVNTarget& target)
{
    HSVNOperation operation{*this, "URLOfTarget", {{"target", target.text()}}};
    const char* url = nullptr;
    operation.call(&HSVNTargetFunctions::client_url_from_path, &url, operation.cString(target.text()),
                   operation.pool());
    return HSVNTextOrNil(url);
}
