#include "Internal/PathText.h"

#include "HSVNPlatformException.h"
#include "Internal/Characters.h"
#include "Internal/PercentEscapes.h"

#include <fmt/format.h>
#include <pwd.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <vector>

namespace {

std::string_view withoutTrailingSlashes(std::string_view path)
{
    while (path.size() > 1 && path.ends_with('/')) {
        path.remove_suffix(1);
    }
    return path;
}

/// The home directory that a look-up in the user database finds; empty for none.
std::string homeInDatabase(const std::function<int(passwd*, char*, std::size_t, passwd**)>& lookUp)
{
    constexpr std::size_t largest = std::size_t{1} << 20;
    std::vector<char> buffer(1024);
    passwd record{};
    passwd* found = nullptr;
    while (lookUp(&record, buffer.data(), buffer.size(), &found) == ERANGE && buffer.size() < largest) {
        buffer.resize(buffer.size() * 2);
    }
    return found ? found->pw_dir : "";
}

/// The home directory without a trailing "/", so that the root is empty; nil when it is not known.
std::optional<std::string> checkedHome(std::string home)
{
    if (!home.starts_with('/')) {
        return std::nullopt;
    }
    home.erase(home.find_last_not_of('/') + 1);
    return home;
}

std::optional<std::string> homeOfCaller()
{
    const char* variable = std::getenv("HOME");
    if (auto home = checkedHome(variable ? variable : "")) {
        return home;
    }
    return checkedHome(homeInDatabase([](passwd* record, char* buffer, std::size_t size, passwd** found) {
        return getpwuid_r(getuid(), record, buffer, size, found);
    }));
}

std::optional<std::string> homeOfUser(const std::string& user)
{
    return checkedHome(homeInDatabase([&user](passwd* record, char* buffer, std::size_t size, passwd** found) {
        return getpwnam_r(user.c_str(), record, buffer, size, found);
    }));
}

constexpr std::array<bool, 256> unescapedBytes = [] {
    constexpr std::string_view others = "-._~!$&'()*+,/:=@";
    std::array<bool, 256> table{};
    for (std::size_t byte = 0; byte < 128; ++byte) {
        const char letter = static_cast<char>(byte);
        table[byte] = (letter >= '0' && letter <= '9') || (letter >= 'A' && letter <= 'Z') ||
                      (letter >= 'a' && letter <= 'z') || others.find(letter) != std::string_view::npos;
    }
    return table;
}();

bool isEscaped(char letter) { return !unescapedBytes[static_cast<unsigned char>(letter)]; }

std::array<char, 3> escapeOf(char letter)
{
    constexpr std::string_view digits = "0123456789ABCDEF";
    const auto byte = static_cast<unsigned char>(letter);
    return {'%', digits[byte >> 4U], digits[byte & 15U]};
}

/// A run of escapes as text: each as its character, those that make up none as they were written.
void appendDecodedRun(std::string& result, std::string_view run)
{
    const std::string bytes = HSVNPercentEscapes::decoded(run);
    for (std::size_t offset = 0; offset < bytes.size();) {
        const auto character = HSVNText::prefix(std::string_view{bytes}.substr(offset), 1);
        result += HSVNText::isWellFormed(character) ? character : run.substr(offset * 3, character.size() * 3);
        offset += character.size();
    }
}

} // namespace

void HSVNPathText::requireText(std::string_view text)
{
    if (!HSVNText::isWellFormed(text)) {
        throw HSVNInvalidArgumentException(
            fmt::format("\"{}\" is not valid UTF-8 text without NUL characters", HSVNText::quoted(text)));
    }
}

std::string_view HSVNPathText::lastComponent(std::string_view path)
{
    const std::string_view shorter = withoutTrailingSlashes(path);
    return shorter == "/" ? shorter : shorter.substr(lastSlash(shorter) + 1);
}

std::string_view HSVNPathText::deletingLastComponent(std::string_view path)
{
    const std::string_view shorter = withoutTrailingSlashes(path);
    const auto slash = lastSlash(shorter);
    return slash == std::string_view::npos ? std::string_view{} : withoutTrailingSlashes(shorter.substr(0, slash + 1));
}

std::string HSVNPathText::joined(std::string_view path, std::string_view component)
{
    component.remove_prefix(std::min(component.find_first_not_of('/'), component.size()));
    std::string result;
    result.reserve(path.size() + component.size() + 1);
    result += path;
    if (!component.empty() && !path.empty() && !path.ends_with('/')) {
        result += '/';
    }
    return result += component;
}

std::string HSVNPathText::expandingTilde(std::string_view path)
{
    if (!path.starts_with('~')) {
        return std::string{path};
    }
    const auto end = std::min(path.find('/'), path.size());
    const auto home = end == 1 ? homeOfCaller() : homeOfUser(std::string{path.substr(1, end - 1)});
    if (!home) {
        return std::string{path};
    }
    const std::string expanded = *home + std::string{path.substr(end)};
    return expanded.empty() ? "/" : expanded;
}

std::string HSVNPathText::abbreviatingHome(std::string_view path)
{
    const auto home = homeOfCaller();
    const bool isInHome =
        home && !home->empty() && path.starts_with(*home) && (path.size() == home->size() || path[home->size()] == '/');
    return isInHome ? "~" + std::string{path.substr(home->size())} : std::string{path};
}

std::string HSVNPathText::percentEncoded(std::string_view text)
{
    std::string result;
    for (auto rest = text.begin(); rest != text.end();) {
        const auto next = std::find_if(rest, text.end(), isEscaped); // most texts have nothing to escape
        result.append(rest, next);
        rest = next;
        if (rest != text.end()) {
            const auto escape = escapeOf(*rest++);
            result.append(escape.begin(), escape.end());
        }
    }
    return result;
}

bool HSVNPathText::isPercentEncoded(std::string_view escaped, std::string_view text)
{
    if (escaped.size() == text.size()) { // most texts have nothing to escape
        bool isAnyEscaped = false;
        for (const char letter : text) {
            isAnyEscaped |= isEscaped(letter);
        }
        return !isAnyEscaped && escaped == text;
    }
    for (const char letter : text) {
        std::array<char, 3> escape{letter};
        std::size_t size = 1;
        if (isEscaped(letter)) {
            escape = escapeOf(letter);
            size = escape.size();
        }
        if (!escaped.starts_with(std::string_view{escape.data(), size})) {
            return false;
        }
        escaped.remove_prefix(size);
    }
    return escaped.empty();
}

std::string HSVNPathText::percentDecoded(std::string_view text)
{
    if (text.find('%') == std::string_view::npos) {
        return std::string{text};
    }
    std::string result;
    result.reserve(text.size());
    for (std::size_t offset = 0; offset < text.size();) {
        std::size_t end = offset;
        while (HSVNPercentEscapes::byteAt(text, end)) {
            end += 3;
        }
        if (end == offset) {
            result += text[offset++];
        } else {
            appendDecodedRun(result, text.substr(offset, end - offset));
            offset = end;
        }
    }
    return result;
}
