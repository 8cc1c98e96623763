#include "Internal/NodeText.h"

#include "HSVNContext.h"
#include "Internal/BundleExtensions.h"

#include <filesystem>
#include <system_error>

namespace {

/// The state that is asked for by no revision at all.
HSVNRevisionSpecRef revisionOf(const HSVNTargetInRevision& item)
{
    if (!item.revision->isEqual(HSVNRevisionSpec::UNSPECIFIED())) {
        return item.revision;
    }
    return item.target.isURL() ? HSVNRevisionSpec::HEAD() : HSVNRevisionSpec::WORKING();
}

} // namespace

HSVNComparedText HSVNTextOfItem(const HSVNTargetInRevision& item, const HSVNContextRef& context)
{
    const auto revision = revisionOf(item);
    std::error_code ignored;
    if (!item.target.isURL() && revision->operativeRevision()->isEqual(HSVNRevision::WORKING()) &&
        std::filesystem::is_symlink(item.target.text(), ignored))
    {
        // As the repository has a link; what it leads to is another file.
        return HSVNComparedText::ofBytes("link " + std::filesystem::read_symlink(item.target.text(), ignored).string());
    }
    // A bundle without the second table expands keywords in any case.
    const bool isOffered = HSVNExtensionOrNull(context->bundle()->extensions(), &HSVNReadingFunctions::client_cat);
    HSVNTemporaryFile file;
    context->contents(item.target, revision, {.expandKeywords = !isOffered},
                      [&file](std::string_view bytes) { file.write(bytes); });
    file.close();
    return HSVNComparedText::ofFile(std::move(file));
}
