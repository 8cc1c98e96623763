#include "HSVNDiff.h"

#include "HSVNPlatformException.h"
#include "Internal/ComparisonParts.h"
#include "Internal/ContentsStream.h"
#include "Internal/Difference.h"
#include "Internal/NodeText.h"

namespace {

void require(const HSVNContextRef& context, const HSVNDiffOptionsRef& options)
{
    HSVNAssertParameter(context != nullptr, "context != nil");
    HSVNAssertParameter(options != nullptr, "options != nil");
}

} // namespace

HSVNDiff HSVNDiff::ofFiles(const HSVNTarget& original, const HSVNTarget& modified, const HSVNContextRef& context,
                           const HSVNDiffOptionsRef& options)
{
    require(context, options);
    return HSVNDiff{Parts::compared(
        staticClassName, "diffOfFiles:", HSVNComparedTexts(HSVNTextOfFile, original, modified), context, options)};
}

HSVNDiff HSVNDiff::ofTexts(std::string original, std::string modified, const HSVNContextRef& context,
                           const HSVNDiffOptionsRef& options)
{
    require(context, options);
    return HSVNDiff{Parts::compared(
        staticClassName, "diffOfTexts:",
        HSVNComparedTexts(HSVNComparedText::ofBytes, std::move(original), std::move(modified)), context, options)};
}

HSVNDiff HSVNDiff::ofItems(const HSVNTargetInRevision& original, const HSVNTargetInRevision& modified,
                           const HSVNContextRef& context, const HSVNDiffOptionsRef& options)
{
    require(context, options);
    const auto textOf = [&context](const HSVNTargetInRevision& item) { return HSVNTextOfItem(item, context); };
    return HSVNDiff{Parts::compared(staticClassName, "diffOfItems:", HSVNComparedTexts(textOf, original, modified),
                                    context, options)};
}

void HSVNDiff::writeUnified(const std::string& originalLabel, const std::string& modifiedLabel,
                            const HSVNContentsReceiver& receiver, const std::string& encoding) const
{
    HSVNAssertParameter(receiver != nullptr, "receiver != nil");
    HSVNOperation operation{parts().context,
                            staticClassName,
                            "writeUnified:",
                            {{"originalLabel", originalLabel}, {"modifiedLabel", modifiedLabel}}};
    const HSVNContentsStream stream{operation, receiver};
    HSVNWriteUnified(operation, stream, parts().texts, *parts().options, {originalLabel, modifiedLabel}, encoding);
}
