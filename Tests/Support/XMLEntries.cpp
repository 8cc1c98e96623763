#include "XMLEntries.h"

#include <regex>

namespace {

std::string unescaped(std::string text)
{
    for (const auto& [escape, character] :
         {std::pair{"&lt;", "<"}, {"&gt;", ">"}, {"&quot;", "\""}, {"&apos;", "'"}, {"&amp;", "&"}})
    {
        for (std::size_t place = 0; (place = text.find(escape, place)) != std::string::npos; ++place) {
            text.replace(place, std::string_view{escape}.size(), character);
        }
    }
    return text;
}

/// "a/b" of the elements below the entry; empty for the entry itself.
std::string keyOf(const std::vector<std::string>& elements)
{
    std::string key;
    for (const auto& element : elements) {
        key += (key.empty() ? "" : "/") + element;
    }
    return key;
}

} // namespace

std::vector<XMLEntry> XMLEntry::entriesIn(const std::string& xml)
{
    static const std::regex tag{R"(<(/?)([a-z-]+)((?:\s+[a-z-]+="[^"]*")*)\s*(/?)>([^<]*))"};
    static const std::regex attribute{R"re(([a-z-]+)="([^"]*)")re"};
    std::vector<XMLEntry> entries;
    std::vector<std::string> elements;
    bool isInside = false;
    for (std::sregex_iterator found{xml.begin(), xml.end(), tag}, end; found != end; ++found) {
        const auto& match = *found;
        const bool isEntry = match[2] == "entry";
        if (match.length(1) > 0) {
            isInside = isInside && !isEntry;
            if (isInside) {
                elements.pop_back();
            }
            continue;
        }
        if (isEntry) {
            entries.emplace_back();
            isInside = true;
        } else if (isInside) {
            elements.push_back(match[2]);
        }
        if (!isInside) {
            continue;
        }
        const auto key = keyOf(elements);
        auto& texts = entries.back()._texts;
        const std::string attributes = match[3];
        for (std::sregex_iterator each{attributes.begin(), attributes.end(), attribute}; each != end; ++each) {
            texts[key + '@' + (*each)[1].str()] = unescaped((*each)[2]);
        }
        texts[key] = unescaped(match[5]);
        if (match.length(4) > 0 && !isEntry) {
            elements.pop_back();
        }
    }
    return entries;
}

std::string XMLEntry::text(const std::string& key) const
{
    const auto found = _texts.find(key);
    return found == _texts.end() ? "" : found->second;
}
