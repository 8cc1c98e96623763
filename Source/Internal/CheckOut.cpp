#include "Internal/CheckOut.h"

#include "Internal/Browsing.h"
#include "Internal/DepthTranslation.h"
#include "Internal/RevisionNumber.h"

namespace {

/// Refuses a depth that Subversion 1.4 cannot express: an exception of the library's class under the platform's name.
class IncompatibleDepthException : public HSVNException
{
  public:
    IncompatibleDepthException()
        : HSVNException("NSInvalidArgumentException",
                        "Incompatible depth argument for 1.4 (HSVNDepthInfinity and HSVNDepthFiles supported)",
                        {{HSVNExceptionStatusKey, std::int64_t{HSVNExceptionGeneralStatus}}})
    {
    }
};

svn_boolean_t recurseForDepth(HSVNDepth depth)
{
    if (depth != HSVNDepthInfinity && depth != HSVNDepthFiles && depth != HSVNDepthUnknown) {
        throw HSVNException{IncompatibleDepthException{}};
    }
    return depth != HSVNDepthFiles;
}

svn_error_t* callCheckOut(HSVNOperation& operation, svn_revnum_t* result, const char* url, const char* path,
                          const HSVNRevisionRecords& revisions, const HSVNCheckOutChoices& choices)
{
    if (const auto checkOut = operation.newest(&HSVNUpdateFunctions::client_checkout)) {
        const HSVNUpdateFunctions::Updating record{.depth = HSVNDepthForSubversion(choices.depth),
                                                   .ignoreExternals = !choices.processExternals,
                                                   .allowObstructions = choices.allowObstructions};
        return checkOut(result, url, path, &revisions.peg, &revisions.operative, &record, operation.ctx(),
                        operation.pool());
    }
    if (operation.isAtLeast(HSVNVersion::version1_5())) {
        return operation->client_checkout3(result, url, path, &revisions.peg, &revisions.operative,
                                           HSVNDepthForSubversion(choices.depth), !choices.processExternals,
                                           choices.allowObstructions, operation.ctx(), operation.pool());
    }
    operation.refuse(operation.isVerb() && choices.allowObstructions, "allowObstructions");
    return operation->client_checkout2(result, url, path, &revisions.peg, &revisions.operative,
                                       recurseForDepth(choices.depth), !choices.processExternals, operation.ctx(),
                                       operation.pool());
}

} // namespace

HSVNRevisionNumber HSVNCheckOut(HSVNOperation& operation, const std::string& url, const std::string& path,
                                const HSVNRevisionSpec& revision, const HSVNCheckOutChoices& choices)
{
    const char* const source = operation.cString(url);
    const char* const target = operation.changed(path);
    svn_revnum_t result = SVN_INVALID_REVNUM;
    operation.check(callCheckOut(operation, &result, source, target, HSVNRevisionRecords{revision}, choices));
    return HSVNRevisionNumberFromSubversion(result);
}
