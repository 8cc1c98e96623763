#include "HSVNArguments.h"

#include "Internal/ExtensionCall.h"

#include <algorithm>

namespace {

std::vector<std::string> textsOf(const apr_array_header_t* array)
{
    std::vector<std::string> texts;
    if (array) {
        HSVNForEachText(array, [&](const char* text) { texts.emplace_back(text); });
    }
    return texts;
}

/// A date to the microsecond, so that the date of a revision finds that revision.
HSVNRevisionRef exactRevision(const svn_opt_revision_t& revision)
{
    if (revision.kind == svn_opt_revision_date) {
        return std::make_shared<HSVNRevisionAtExactDate>(HSVNDate{revision.value.date});
    }
    return HSVNRevision::revisionFromSVNRevision(&revision);
}

} // namespace

HSVNArguments::List HSVNArguments::canonicalTargets(const std::vector<std::string>& arguments,
                                                    const HSVNContextRef& context)
{
    // Only what is told from a repository's root has Subversion look at working copies, which it then keeps open.
    const bool opens = std::ranges::any_of(arguments, [](const auto& text) { return text.starts_with('^'); });
    HSVNOperation operation{context,
                            "HSVNArguments",
                            "canonicalTargets:withContext:",
                            {{opens ? "targets" : "arguments", arguments}, {"context", context}}};
    const auto function = operation.extension(&HSVNTargetFunctions::client_args_to_target_array);
    apr_array_header_t* targets = nullptr;
    svn_error_t* error = function(&targets, HSVNTextArray(operation, arguments), operation.ctx(), operation.pool());
    List list;
    if (error && error->apr_err == SVN_ERR_RESERVED_FILENAME_SPECIFIED) {
        list.skipped = HSVNException::exceptionWithError(error);
        error = nullptr;
    }
    operation.check(error);
    list.targets = textsOf(targets);
    return list;
}

HSVNArguments::Pegged HSVNArguments::parse(const std::string& target, const HSVNContextRef& context)
{
    // A text as yet: what it names is the business of the operation on it.
    HSVNOperation operation{
        context, "HSVNArguments", "parse:withContext:", {{"argument", target}, {"context", context}}};
    svn_opt_revision_t pegRevision{};
    const char* path = nullptr;
    operation.call(&HSVNTargetFunctions::opt_parse_path, &pegRevision, &path, operation.cString(target),
                   operation.pool());
    return {path, exactRevision(pegRevision)};
}

std::optional<std::pair<HSVNRevisionRef, HSVNRevisionRef>> HSVNArguments::parseRevisions(const std::string& text,
                                                                                         const HSVNContextRef& context)
{
    HSVNOperation operation{
        context, "HSVNArguments", "parseRevisions:withContext:", {{"text", text}, {"context", context}}};
    svn_opt_revision_t start{};
    svn_opt_revision_t end{};
    const auto function = operation.extension(&HSVNTargetFunctions::opt_parse_revision);
    if (function(&start, &end, operation.cString(text), operation.pool()) != 0) {
        return std::nullopt;
    }
    return std::pair{exactRevision(start), exactRevision(end)};
}
