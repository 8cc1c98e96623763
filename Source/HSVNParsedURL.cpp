#include "HSVNParsedURL.h"

#include "Internal/PathText.h"

#ifdef __clang_analyzer__
#include <boost/url.hpp> // clang's analyzer takes the views that Boost returns by value for dangling ones
#else
#include <boost/url/src.hpp> // the whole of Boost.URL: compiled in here
#endif

#include <algorithm>
#include <charconv>
#include <limits>
#include <system_error>
#include <utility>

namespace {

constexpr std::int32_t largestPort = 65535;

/// The number of a port's digits; nil for one that is too large.
std::optional<std::int32_t> portNumber(std::string_view digits)
{
    std::int32_t port = 0;
    const auto parsed = std::from_chars(digits.data(), digits.data() + digits.size(), port);
    return parsed.ec == std::errc{} && port <= largestPort ? std::optional{port} : std::nullopt;
}

std::optional<std::string> decoded(const std::optional<std::string>& text)
{
    return text ? std::optional{HSVNPathText::percentDecoded(*text)} : std::nullopt;
}

/// Whether RFC 3986 knows the letter. Boost asserts on some that it does not.
bool isURLLetter(char letter)
{
    constexpr std::string_view others = "\"<>\\^`{|}";
    return letter > ' ' && letter < '\x7f' && others.find(letter) == std::string_view::npos;
}

} // namespace

std::optional<HSVNParsedURL> HSVNParsedURL::parse(std::string text)
{
    if (!std::all_of(text.begin(), text.end(), isURLLetter)) {
        return std::nullopt;
    }
    const auto result = boost::urls::parse_uri_reference(text);
    if (!result || text.size() > std::numeric_limits<std::uint32_t>::max()) {
        return std::nullopt;
    }
    // Boost takes what an authority cannot go on with, such as a port in letters, for a path without its "/".
    if (result->has_authority() && !result->encoded_path().empty() && !result->encoded_path().starts_with('/')) {
        return std::nullopt;
    }
    const auto locate = [&text](std::string_view found) {
        const auto offset = found.empty() ? 0 : found.data() - text.data();
        return Part{static_cast<std::uint32_t>(offset), static_cast<std::uint32_t>(found.size())};
    };
    HSVNParsedURL url;
    if (result->has_port() && !result->port().empty()) {
        url._port = portNumber(result->port());
        if (!url._port) {
            return std::nullopt;
        }
    }
    url._scheme = locate(result->scheme());
    url._path = locate(result->encoded_path());
    if (result->has_userinfo()) {
        url._user = locate(result->encoded_user());
    }
    if (!result->encoded_host().empty()) {
        url._host = locate(result->encoded_host());
    }
    url._text = std::move(text);
    return url;
}

std::optional<std::string> HSVNParsedURL::user() const { return decoded(encodedUser()); }

std::optional<std::string> HSVNParsedURL::host() const { return decoded(encodedHost()); }

std::string HSVNParsedURL::path() const { return HSVNPathText::percentDecoded(encodedPath()); }
