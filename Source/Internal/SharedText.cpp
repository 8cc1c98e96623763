#include "Internal/SharedText.h"

#include <utility>

HSVNSharedText HSVNMakeSharedText(std::optional<std::string> text)
{
    return text ? std::make_shared<const std::string>(*std::move(text)) : nullptr;
}

std::optional<std::string> HSVNTextValue(const HSVNSharedText& text)
{
    return text ? std::optional{*text} : std::nullopt;
}

HSVNSharedText HSVNTextCache::sharedText(const char* text)
{
    if (!text) {
        return nullptr;
    }
    const auto known = _texts.find(std::string_view{text});
    return known != _texts.end() ? *known : *_texts.insert(std::make_shared<const std::string>(text)).first;
}
