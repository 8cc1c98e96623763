#include "Internal/ComparisonParts.h"

#include "HSVNException.h"
#include "HSVNPlatformException.h"
#include "Internal/Difference.h"
#include "Internal/Operation.h"

#include <filesystem>
#include <fmt/format.h>
#include <system_error>

HSVNComparedText& HSVNComparison::Parts::text(HSVNDiffSide side)
{
    const auto index = static_cast<std::size_t>(side);
    HSVNAssertParameter(index < texts.size(), "side < [texts count]");
    return texts[index];
}

void HSVNRequireComparison(const HSVNContextRef& context, const HSVNDiffOptionsRef& options)
{
    HSVNAssertParameter(context != nullptr, "context != nil");
    HSVNAssertParameter(options != nullptr, "options != nil");
}

std::unique_ptr<HSVNComparison::Parts>
HSVNComparison::Parts::compared(std::string_view className, std::string_view name, std::vector<HSVNComparedText> texts,
                                const HSVNContextRef& context, const HSVNDiffOptionsRef& options)
{
    HSVNOperation operation{context, className, name, {{"context", context}, {"options", options}}};
    auto sections = HSVNSectionsOf(operation, texts, *options);
    return std::make_unique<Parts>(Parts{std::move(texts), context, options, std::move(sections)});
}

HSVNComparedText HSVNTextOfFile(const HSVNTarget& file)
{
    if (file.isURL()) {
        throw HSVNException(fmt::format("'{}' is not a local path", file.text()));
    }
    // What it is now, wherever the process goes later.
    std::error_code error;
    const auto path = std::filesystem::absolute(file.text(), error);
    return HSVNComparedText::ofFile(error ? file.text() : path.string());
}
