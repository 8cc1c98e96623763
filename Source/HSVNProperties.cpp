#include "HSVNProperties.h"

#include "HSVNEndOfLine.h"
#include "HSVNPlatformException.h"
#include "HSVNPropertyNames.h"
#include "HSVNStringExternals.h"
#include "HSVNStringProperties.h"

#include <algorithm>
#include <array>
#include <fmt/format.h>
#include <utility>

HSVNProperties::HSVNProperties(Map values) : _values{std::move(values)} {}

std::optional<std::string> HSVNProperties::value(const std::string& name) const
{
    const auto found = _values.find(name);
    return found == _values.end() ? std::nullopt : std::optional{found->second};
}

void HSVNProperties::setValue(std::optional<std::string> value, const std::string& name)
{
    if (value) {
        _values[name] = std::move(*value);
    } else {
        _values.erase(name);
    }
}

void HSVNProperties::setFlag(bool flag, const char* name)
{
    setValue(flag ? std::optional<std::string>{"*"} : std::nullopt, name);
}

void HSVNProperties::setText(std::string text, const char* name)
{
    setValue(text.empty() ? std::nullopt : std::optional{std::move(text)}, name);
}

std::vector<std::string> HSVNProperties::keywords() const
{
    const auto text = value(HSVNPropertyKeywords);
    return text ? HSVNString::keywordListValue(*text) : std::vector<std::string>{};
}

void HSVNProperties::setKeywords(const std::vector<std::string>& keywords)
{
    setText(HSVNString::stringFromKeywordList(keywords), HSVNPropertyKeywords);
}

std::vector<std::string> HSVNProperties::ignore() const
{
    const auto text = value(HSVNPropertyIgnore);
    return text ? HSVNString::ignoreListValue(*text) : std::vector<std::string>{};
}

void HSVNProperties::setIgnore(const std::vector<std::string>& patterns)
{
    setText(HSVNString::stringFromIgnoreList(patterns).value_or(""), HSVNPropertyIgnore);
}

std::optional<std::string> HSVNProperties::EOLStyle() const { return value(HSVNPropertyEOLStyle); }

void HSVNProperties::setEOLStyle(const std::optional<std::string>& style)
{
    const std::array known{HSVNEndOfLineDefault, HSVNEndOfLineNative, HSVNEndOfLineCRLF, HSVNEndOfLineCR,
                           HSVNEndOfLineLF};
    if (std::find(known.begin(), known.end(), style) == known.end()) {
        throw HSVNInvalidArgumentException(fmt::format("Unrecognized end-of-line style '{}'", *style));
    }
    setValue(style, HSVNPropertyEOLStyle);
}

std::optional<std::string> HSVNProperties::MIMEType() const { return value(HSVNPropertyMIMEType); }

void HSVNProperties::setMIMEType(const std::optional<std::string>& type) { setValue(type, HSVNPropertyMIMEType); }

bool HSVNProperties::isExecutable() const { return _values.contains(HSVNPropertyIsExecutable); }

void HSVNProperties::setIsExecutable(bool isExecutable) { setFlag(isExecutable, HSVNPropertyIsExecutable); }

bool HSVNProperties::needsLock() const { return _values.contains(HSVNPropertyNeedsLock); }

void HSVNProperties::setNeedsLock(bool needsLock) { setFlag(needsLock, HSVNPropertyNeedsLock); }

std::vector<HSVNExternalDefinitionRef> HSVNProperties::externals() const
{
    const auto text = externalsText();
    return text ? HSVNString::externalDefinitionListValue(*text) : std::vector<HSVNExternalDefinitionRef>{};
}

void HSVNProperties::setExternals(const std::vector<HSVNExternalDefinitionRef>& definitions)
{
    setText(HSVNString::exactStringFromExternalDefinitionList(definitions), HSVNPropertyExternals);
}

std::optional<std::string> HSVNProperties::externalsText() const { return value(HSVNPropertyExternals); }

void HSVNProperties::setExternalsText(const std::optional<std::string>& text) { setValue(text, HSVNPropertyExternals); }
