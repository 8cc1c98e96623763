#include "FuzzInput.h"

// Ignore lists and keyword lists: a name on the first line, the property's value on the others.
HSVN_FUZZ_TARGET
{
    FuzzLibrary::shared();
    FuzzInput input{data, size};
    const std::string name = input.line();
    const std::string text = input.rest();
    passes([&] {
        const auto patterns = HSVNString::ignoreListValue(text);
        const auto written = HSVNString::stringFromIgnoreList(patterns).value_or("");
        require(HSVNString::stringFromIgnoreList(HSVNString::ignoreListValue(written)) == written,
                "a list of patterns is read back");
        HSVNString::matchesPatternInArray(name, patterns);
    });
    passes([&] { HSVNString::stringFromKeywordList(HSVNString::keywordListValue(text)); });
    passes([&] { HSVNString::stringByReplacingCharactersInSet(text, name, "?"); });
    return 0;
}
