#include "HSVNURL.h"

#include "HSVNLocalPath.h"
#include "HSVNParsedURL.h"
#include "HSVNPlatformException.h"
#include "Internal/Characters.h"
#include "Internal/PathText.h"
#include "Internal/PercentEscapes.h"
#include "Internal/TrustedText.h"

#include <fmt/format.h>
#include <netdb.h>
#include <strings.h>

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>
#include <vector>

namespace {

constexpr std::string_view schemeSeparator = "://";
constexpr std::string_view fileRoot = "file:///";
constexpr std::string_view nonEmptyString = "string != nil && [string length] > 0";
constexpr std::string_view nonEmptyComponent = "component != nil && [component length] > 0";

char lowered(char letter) { return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter; }

/// Every letter of a scheme by RFC 3986, and "_", which names of tunnels have.
bool isSchemeLetter(char letter)
{
    return (lowered(letter) >= 'a' && lowered(letter) <= 'z') || (letter >= '0' && letter <= '9') || letter == '+' ||
           letter == '-' || letter == '.' || letter == '_';
}

HSVNParsedURL parsedURL(const std::string& url, std::string_view shown)
{
    auto parsed = HSVNURL::URLWithSubstitutedSchemeForString(url);
    const std::string_view scheme = std::string_view{url}.substr(0, url.find(schemeSeparator));
    if (!parsed || !std::ranges::all_of(scheme, isSchemeLetter)) {
        throw HSVNInvalidArgumentException(fmt::format("Failed to parse \"{}\". URL is probably malformed.", shown));
    }
    return *std::move(parsed);
}

std::string replacingAll(std::string_view text, std::string_view old, std::string_view replacement)
{
    std::string result;
    result.reserve(text.size());
    for (auto found = text.find(old); found != std::string_view::npos; found = text.find(old)) {
        result.append(text.substr(0, found)).append(replacement);
        text.remove_prefix(found + old.size());
    }
    return result.append(text);
}

/// "?" and "#" of what follows the scheme escaped. A URL of Subversion has neither a query nor a fragment: it takes the
/// two for letters of the item's name.
std::string withoutQuery(std::string_view url) { return replacingAll(replacingAll(url, "?", "%3F"), "#", "%23"); }

/// A valid URL's text as it is kept: trimmed, without a trailing "/".
std::string normalizedURL(const std::string& string)
{
    HSVNPathText::requireText(string);
    const std::string_view trimmed = HSVNText::trimmed(string);
    const auto separator = trimmed.find(schemeSeparator);
    if (separator == std::string_view::npos || separator == 0) {
        throw HSVNInvalidArgumentException("URL does not contain a scheme");
    }
    std::string url = withoutQuery(trimmed);
    if (url.size() > separator + schemeSeparator.size() && !HSVNText::equalIgnoringCase(url, fileRoot) &&
        url.ends_with('/'))
    {
        url.pop_back();
    }
    parsedURL(url, trimmed);
    return url;
}

const std::string& required(const std::string& string)
{
    HSVNAssertParameter(!string.empty(), nonEmptyString);
    return string;
}

const std::string& textOf(const HSVNPathRef& path)
{
    HSVNAssertParameter(path != nullptr, nonEmptyString);
    return path->string();
}

/// A user's name for the place before "@"; "%" goes first, so that no escape is escaped again.
std::string escapedUser(std::string user)
{
    constexpr std::array<std::pair<std::string_view, std::string_view>, 6> escapes{
        {{"%", "%25"}, {"@", "%40"}, {":", "%3a"}, {"/", "%2f"}, {"\\", "%5c"}, {" ", "%20"}}};
    for (const auto& [character, escape] : escapes) {
        user = replacingAll(user, character, escape);
    }
    // Other letters that no URL may have; the escapes' own "%" stays, and so does ";", which only paths have escaped.
    return replacingAll(replacingAll(HSVNPathText::percentEncoded(user), "%25", "%"), "%3B", ";");
}

HSVNURLRef assembledURL(const std::string& scheme, const std::optional<std::string>& user,
                        const std::optional<std::string>& host, std::optional<std::int32_t> port,
                        const std::string& path)
{
    std::string text = scheme + std::string{schemeSeparator};
    if (user) {
        text += *user + "@";
    }
    text += host.value_or("");
    if (port) {
        text += fmt::format(":{}", *port);
    }
    return HSVNURL::URLWithString(text + (path.starts_with('/') ? "" : "/") + path);
}

/// A file URL's text with every "file://localhost/", in whatever case, as "file:///".
std::string withoutLocalhost(std::string_view url)
{
    constexpr std::string_view localhost = "file://localhost/";
    std::string text;
    while (!url.empty()) {
        const bool isMatch = HSVNText::equalIgnoringCase(url.substr(0, localhost.size()), localhost);
        text += isMatch ? fileRoot : url.substr(0, 1);
        url.remove_prefix(isMatch ? localhost.size() : 1);
    }
    return text;
}

/// Begin and end of an IPv6 address with its brackets, which are escaped anywhere else; both 0 without one.
std::pair<std::size_t, std::size_t> bracketedHost(std::string_view url)
{
    const auto separator = url.find(schemeSeparator);
    const auto start = separator == std::string_view::npos ? url.size() : separator + schemeSeparator.size();
    const auto server = url.substr(start, url.find('/', start) - start);
    const auto begin = server.find('[', server.find('@') + 1);
    const auto end = server.find(']', begin);
    const bool isHost = end != std::string_view::npos && (begin == 0 || server[begin - 1] == '@');
    return isHost ? std::pair{start + begin, start + end + 1} : std::pair<std::size_t, std::size_t>{0, 0};
}

/// A URL whose text makes up one with every valid URL that it was made from, but for a "/" left at its end.
HSVNURLRef derivedURL(std::string url)
{
    return url.ends_with('/') ? HSVNURL::URLWithString(url) : HSVNURLOfTrustedText(std::move(url));
}

/// The text of a URL's parent, which begins the URL's own; nil at the top.
std::optional<std::string_view> parentURLText(std::string_view url)
{
    const auto server = url.find(schemeSeparator) + schemeSeparator.size();
    const auto slash = url.rfind('/');
    if (HSVNText::equalIgnoringCase(url, fileRoot) || slash < server) {
        return std::nullopt;
    }
    const auto parent = url.substr(0, std::max(slash, server + 1));
    const bool hasSlashLeft = parent.ends_with('/') && !HSVNText::equalIgnoringCase(parent, fileRoot);
    return parent.substr(0, parent.size() - (hasSlashLeft ? 1 : 0));
}

/// Makes a URL's text that of its child.
void appendChild(std::string& url, const std::string& component)
{
    // The child is looked at below the shortest URL, lest a long one be parsed for each. After a bare scheme it is a
    // host.
    const std::string shortest{url.ends_with(schemeSeparator) ? std::string_view{url} : fileRoot};
    const auto child = [&] {
        try {
            return normalizedURL(HSVNPathText::joined(shortest, component));
        } catch (const HSVNInvalidArgumentException&) {
            HSVNURL::URLWithString(url)->pathByAddingComponent(component); // whose failure names it
            throw;
        }
    }();
    url += child.size() == shortest.size() || url.ends_with('/') ? "" : "/";
    url += std::string_view{child}.substr(shortest.size());
}

std::optional<std::string> encodedUserOf(const HSVNParsedURL& url)
{
    const auto user = url.encodedUser();
    return user ? std::optional{escapedUser(HSVNPercentEscapes::decoded(*user))} : std::nullopt;
}

} // namespace

HSVNURL::HSVNURL(const std::string& string) : _url{normalizedURL(required(string))} {}

HSVNURL::HSVNURL(const HSVNPathRef& path) : HSVNURL{textOf(path)} {}

HSVNURL::HSVNURL(HSVNCoder* decoder) : HSVNPath{decoder}, _url{normalizedURL(decoder->decodeRequiredString("string"))}
{
}

HSVNURL::HSVNURL(const Trusted& /*key*/, std::string url) : _url{std::move(url)} {}

HSVNURLRef HSVNURLOfTrustedText(std::string url)
{
    return std::make_shared<HSVNURL>(HSVNURL::Trusted{}, std::move(url));
}

HSVNURLRef HSVNURL::URLWithString(const std::string& string) { return std::make_shared<HSVNURL>(string); }

HSVNURLRef HSVNURL::URLWithPath(const HSVNPathRef& path) { return std::make_shared<HSVNURL>(path); }

HSVNURLRef HSVNURL::URLEncodeString(const std::string& string)
{
    required(string);
    HSVNPathText::requireText(string);
    const auto [begin, end] = bracketedHost(string);
    return URLWithString(HSVNPathText::percentEncoded(std::string_view{string}.substr(0, begin)) +
                         string.substr(begin, end - begin) +
                         HSVNPathText::percentEncoded(std::string_view{string}.substr(end)));
}

HSVNURLRef HSVNURL::URLWithScheme(const std::string& scheme, const std::optional<std::string>& user,
                                  const std::optional<std::string>& host, std::optional<std::int32_t> port,
                                  const std::optional<std::string>& path)
{
    return assembledURL(scheme, user ? std::optional{escapedUser(*user)} : std::nullopt, host, port, path.value_or(""));
}

std::optional<HSVNParsedURL> HSVNURL::URLWithSubstitutedSchemeForString(const std::string& string)
{
    const auto separator = string.find(schemeSeparator);
    return HSVNParsedURL::parse(separator == std::string::npos ? string : "scheme" + string.substr(separator));
}

std::int32_t HSVNURL::defaultPortForScheme(const std::string& scheme)
{
    std::string service = scheme;
    std::ranges::transform(service, service.begin(), lowered);
    constexpr std::size_t largest = std::size_t{1} << 20;
    std::vector<char> buffer(1024);
    servent record{};
    servent* found = nullptr;
    while (getservbyname_r(service.c_str(), "tcp", &record, buffer.data(), buffer.size(), &found) == ERANGE &&
           buffer.size() < largest)
    {
        buffer.resize(buffer.size() * 2);
    }
    return found ? ntohs(static_cast<std::uint16_t>(found->s_port)) : 0;
}

std::string HSVNURL::URLDecodedString() const { return HSVNPathText::percentDecoded(_url); }

std::string HSVNURL::scheme() const { return _url.substr(0, _url.find(schemeSeparator)); }

std::optional<std::string> HSVNURL::host() const { return parsed().host(); }

std::optional<std::int32_t> HSVNURL::port() const { return parsed().port(); }

std::optional<std::string> HSVNURL::user() const { return parsed().user(); }

std::string HSVNURL::hostAndScheme() const
{
    const auto url = parsed();
    std::string text = scheme() + std::string{schemeSeparator};
    if (const auto user = encodedUserOf(url)) {
        text += *user + "@";
    }
    text += url.encodedHost().value_or("");
    if (url.port()) {
        text += fmt::format(":{}", *url.port());
    }
    return text;
}

std::string HSVNURL::relativePath() const
{
    return HSVNPathText::percentEncoded(HSVNPercentEscapes::decoded(parsed().encodedPath()));
}

std::string HSVNURL::denormalizedRelativePath() const { return parsed().path(); }

bool HSVNURL::isFileURL() const { return HSVNText::equalIgnoringCase(scheme(), "file"); }

bool HSVNURL::schemeUsesTunnel() const { return scheme().find('+') != std::string::npos; }

std::optional<std::string> HSVNURL::location() const
{
    if (parsed().encodedPath().empty()) {
        return _url;
    }
    const auto container = parent();
    return container ? std::optional{container->string()} : std::nullopt;
}

std::optional<std::string> HSVNURL::denormalizedLocation() const
{
    const auto text = location();
    return text ? std::optional{HSVNPathText::percentDecoded(*text)} : std::nullopt;
}

std::string HSVNURL::lastComponent() const
{
    // Read from the text without parsing it: every node of a listing asks.
    const auto path = _url.find('/', _url.find(schemeSeparator) + schemeSeparator.size());
    const auto hasPath = path != std::string::npos && path + 1 < _url.size();
    return hasPath ? std::string{HSVNPathText::lastComponent(_url)} : "/";
}

std::string HSVNURL::denormalizedLastComponent() const { return HSVNPathText::percentDecoded(lastComponent()); }

std::optional<std::string> HSVNURL::textOfChild(const std::string& component) const
{
    if (component == "/") {
        return std::nullopt;
    }
    const auto begin = component.find_first_not_of('/');
    if (begin == std::string::npos) {
        throw HSVNInvalidArgumentException("Valid component required");
    }
    const auto size = component.find_last_not_of('/') + 1 - begin;
    return HSVNPathText::joined(_url, std::string_view{component}.substr(begin, size));
}

HSVNURLRef HSVNURL::pathByAddingComponent(const std::string& component) const
{
    HSVNAssertParameter(!component.empty(), nonEmptyComponent);
    const auto text = textOfChild(component);
    return text ? URLWithString(*text) : selfURL();
}

HSVNURLRef HSVNURL::pathByNormalizingAndAddingComponent(const std::string& component) const
{
    HSVNAssertParameter(!component.empty(), nonEmptyComponent);
    HSVNPathText::requireText(component);
    auto text = textOfChild(HSVNPathText::percentEncoded(component));
    if (!text) {
        return selfURL();
    }
    // What follows a bare scheme is a host, which escaping does not make valid.
    return _url.ends_with(schemeSeparator) ? URLWithString(*text) : derivedURL(*std::move(text));
}

HSVNURLRef HSVNURL::parent() const
{
    const auto text = parentURLText(_url);
    return text ? HSVNURLOfTrustedText(std::string{*text}) : nullptr;
}

HSVNLocalPathRef HSVNURL::localPath() const
{
    if (!isFileURL()) {
        throw HSVNInvalidArgumentException("URL is not a file:// URL");
    }
    const auto path = HSVNPercentEscapes::decoded(parsed().encodedPath());
    if (!path.starts_with('/') || !HSVNText::isWellFormed(path)) {
        throw HSVNInvalidArgumentException("URL is not a valid file URL");
    }
    return HSVNLocalPath::pathWithString(path);
}

HSVNURLRef HSVNURL::stripUser() const
{
    const auto url = parsed();
    return url.encodedUser() ? assembledURL(scheme(), std::nullopt, url.encodedHost(), url.port(), relativePath())
                             : selfURL();
}

HSVNURLRef HSVNURL::URLWithScheme(const std::string& scheme) const
{
    const auto url = parsed();
    return assembledURL(scheme, encodedUserOf(url), url.encodedHost(), url.port(), relativePath());
}

HSVNURLRef HSVNURL::URLWithUser(const std::optional<std::string>& user) const
{
    const auto url = parsed();
    return assembledURL(scheme(), user ? std::optional{escapedUser(*user)} : std::nullopt, url.encodedHost(),
                        url.port(), relativePath());
}

HSVNURLRef HSVNURL::URLWithPort(std::optional<std::int32_t> port) const
{
    const auto url = parsed();
    return assembledURL(scheme(), encodedUserOf(url), url.encodedHost(), port, relativePath());
}

HSVNURLRef HSVNURL::canonicalize() const
{
    if (isFileURL()) {
        return URLWithString(withoutLocalhost(_url));
    }
    if (schemeUsesTunnel()) {
        return stripUser();
    }
    const auto url = parsed();
    const auto port = url.port().value_or(defaultPortForScheme(scheme()));
    return port == 0 ? selfURL() : assembledURL(scheme(), std::nullopt, url.encodedHost(), port, relativePath());
}

HSVNURLRef HSVNURL::resolve(bool* wasLink) const
{
    HSVNAssertParameter(wasLink != nullptr, "wasLink != nil");
    *wasLink = false;
    return selfURL();
}

HSVNURLRef HSVNURL::copy() const { return std::make_shared<HSVNURL>(*this); }

void HSVNURL::encodeWithCoder(HSVNCoder* encoder) const
{
    HSVNPath::encodeWithCoder(encoder);
    encoder->encodeString(_url, "string");
}

HSVNURLRef HSVNURL::selfURL() const { return std::static_pointer_cast<const HSVNURL>(self()); }

HSVNParsedURL HSVNURL::parsed() const { return parsedURL(_url, _url); }

HSVNLocalPathRef HSVNURL::itemLocalPath() const { return localPath(); }

HSVNPathRef HSVNURL::pathAtRelative(const std::string& path) const
{
    std::optional<std::string> text = _url;
    HSVNPathText::forEachStep(path, [&](const std::string& step) {
        if (step != "..") {
            appendChild(*text, step);
        } else if (const auto parent = parentURLText(*text)) {
            text->resize(parent->size());
        } else {
            text.reset();
        }
        return text.has_value();
    });
    return !text ? nullptr : *text == _url ? selfURL() : HSVNURLOfTrustedText(*std::move(text));
}

std::vector<std::size_t> HSVNURL::ancestorSizes() const { return HSVNSizesOfAncestors(_url, parentURLText); }

HSVNPathRef HSVNURL::ancestorOfSize(std::size_t size) const
{
    return size == _url.size() ? selfURL() : HSVNURLOfTrustedText(_url.substr(0, size));
}
