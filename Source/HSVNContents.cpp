#include "HSVNContents.h"

#include "Internal/Browsing.h"
#include "Internal/ContentsStream.h"
#include "Internal/ExtensionCall.h"

void HSVNReadContents(const std::string& target, const HSVNRevisionSpecRef& revision, bool expandKeywords,
                      const HSVNContentsReceiver& receiver, const HSVNContextRef& context)
{
    HSVNAssertParameter(revision != nullptr, "revision != nil");
    HSVNAssertParameter(receiver != nullptr, "receiver != nil");
    HSVNAssertParameter(context != nullptr, "context != nil");
    HSVNOperation operation{context,
                            "HSVNContents",
                            "readContents:revision:expandKeywords:receiver:withContext:",
                            {{"target", target}, {"revision", revision}, {"context", context}}};
    const auto function = operation.extension(&HSVNBundleExtensions::client_cat);
    const HSVNRevisionRecords revisions{*revision};
    const HSVNContentsStream stream{operation, receiver};
    operation.check(function(stream, operation.cString(target), &revisions.peg, &revisions.operative, expandKeywords,
                             operation.ctx(), operation.pool()));
}
