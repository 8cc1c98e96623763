#include "HSVNContext.h"
#include "HSVNRevision.h"
#include "Internal/Operation.h"
#include "Internal/RevisionNumber.h"

#include <fmt/format.h>

HSVNRevisionNumber HSVNContext::latestRevision(const HSVNTarget& target)
{
    HSVNOperation operation{*this, "latestRevision", {{"target", target.text()}}};
    const char* url = nullptr;
    operation.call(&HSVNTargetFunctions::client_url_from_path, &url, operation.cString(target.text()),
                   operation.pool());
    if (!url) {
        throw HSVNInvalidArgumentException(fmt::format("'{}' has no URL", target.text()));
    }
    // Any property will do: the server is asked which revision HEAD is, and this one has every revision.
    const auto head = HSVNRevision::HEAD()->SVNRevision();
    svn_string_t* value = nullptr;
    svn_revnum_t number = HSVNInvalidRevision;
    operation.call(&HSVNPropertyFunctions::client_revprop_get, "svn:date", &value, url, &head, &number, operation.ctx(),
                   operation.pool());
    return HSVNRevisionNumberFromSubversion(number);
}
