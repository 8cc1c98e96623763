#include "Internal/Everlasting.h"
#include "UnicodeDates.h"
#include "UnicodeTexts.h"

namespace {

class Module final : public HSVNUnicode
{
  public:
    std::size_t offsetAfterCharacter(std::string_view text, std::size_t offset) const override
    {
        return UnicodeTexts::offsetAfterCharacter(text, offset);
    }
    std::string_view trimmed(std::string_view text) const override { return UnicodeTexts::trimmed(text); }
    std::string plainForm(std::string_view text) const override { return UnicodeTexts::plainForm(text); }
    std::string searchForm(std::string_view text) const override { return UnicodeTexts::searchForm(text); }
    EncodedText encoded(std::string_view text, const std::string& encoding) const override
    {
        return UnicodeTexts::encoded(text, encoding);
    }
    std::optional<LocalTime> localTime(std::int64_t secondsSince1970) const override
    {
        return UnicodeDates::localTime(secondsSince1970);
    }
    std::optional<std::int64_t> dateInLocaleStyle(std::string_view text) const override
    {
        return UnicodeDates::dateInLocaleStyle(text);
    }
};

} // namespace

extern "C" HSVN_EXPORT const HSVNUnicode* HSVNUnicodeModule()
{
    static const HSVNEverlasting<Module> module;
    return &*module;
}
