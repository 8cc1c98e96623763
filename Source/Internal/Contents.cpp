#include "Internal/Contents.h"

#include "Internal/Browsing.h"

void HSVNContents(HSVNOperation& operation, svn_stream_t* out, const std::string& target,
                  const HSVNRevisionSpec& revision, const HSVNContentsChoices& choices)
{
    const HSVNRevisionRecords revisions{revision};
    const char* const item = operation.cString(target);
    if (const auto contents = operation.newest(&HSVNReadingFunctions::client_cat)) {
        operation.check(contents(out, item, &revisions.peg, &revisions.operative, choices.expandKeywords,
                                 operation.ctx(), operation.pool()));
        return;
    }
    operation.refuse(!choices.expandKeywords, "expandKeywords");
    operation.check(
        operation->client_cat2(out, item, &revisions.peg, &revisions.operative, operation.ctx(), operation.pool()));
}
