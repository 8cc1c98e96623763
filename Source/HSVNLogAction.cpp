#include "HSVNLogAction.h"

#include "HSVNException.h"

#include <string_view>

namespace {

// The characters in the order of the actions, from unknown (-1) on.
constexpr std::string_view actionCharacters = "O-ADRM";

} // namespace

HSVNLogAction HSVNLogActionFromChar(char character)
{
    const auto index = actionCharacters.find(character, 1);
    return index == std::string_view::npos ? HSVNLogActionUnknown
                                           : static_cast<HSVNLogAction>(static_cast<std::int32_t>(index) - 1);
}

char HSVNCharFromLogAction(HSVNLogAction action)
{
    const auto index = static_cast<std::int64_t>(action) + 1;
    if (index < 0 || index >= static_cast<std::int64_t>(actionCharacters.size())) {
        throw HSVNException("Unrecognized action");
    }
    return actionCharacters[static_cast<std::size_t>(index)];
}

std::string HSVNStringFromLogAction(HSVNLogAction action) { return {HSVNCharFromLogAction(action)}; }

HSVNLogAction HSVNLogActionFromString(const std::optional<std::string>& text)
{
    if (!text) {
        return HSVNLogActionNone;
    }
    return text->empty() ? HSVNLogActionUnknown : HSVNLogActionFromChar(text->front());
}
