#include "HSVNPathArray.h"

#include "HSVNParsedURL.h"
#include "HSVNPath.h"
#include "HSVNPlatformException.h"
#include "HSVNURL.h"

#include <fmt/format.h>

#include <type_traits>
#include <unordered_set>
#include <utility>

namespace {

/// What `convert` makes of each path.
template <class Convert>
auto eachConverted(const HSVNArray::Paths& paths, Convert convert)
{
    std::vector<std::decay_t<decltype(convert(*paths.front()))>> results;
    results.reserve(paths.size());
    for (const auto& path : paths) {
        HSVNAssertParameter(path != nullptr, "path != nil");
        results.push_back(convert(*path));
    }
    return results;
}

HSVNParsedURL parsedURL(const HSVNPath& path)
{
    const auto text = path.URL()->string();
    auto url = HSVNParsedURL::parse(text);
    if (!url) {
        throw HSVNInvalidArgumentException(fmt::format("Failed to parse \"{}\". URL is probably malformed.", text));
    }
    return *std::move(url);
}

} // namespace

std::vector<std::string> HSVNArray::arrayWithStringsOfPaths(const Paths& paths)
{
    return eachConverted(paths, [](const HSVNPath& path) { return path.string(); });
}

HSVNArray::Paths HSVNArray::arrayWithPathsForStrings(const std::vector<std::string>& strings)
{
    Paths paths;
    paths.reserve(strings.size());
    for (const auto& string : strings) {
        paths.push_back(HSVNPath::pathWithString(string));
    }
    return paths;
}

std::vector<HSVNParsedURL> HSVNArray::arrayWithNSURLsForPaths(const Paths& paths)
{
    return eachConverted(paths, parsedURL);
}

std::vector<std::string> HSVNArray::arrayWithLastPathComponents(const Paths& paths)
{
    return eachConverted(paths, [](const HSVNPath& path) { return path.lastComponent(); });
}

std::vector<std::string> HSVNArray::arrayWithDenormalizedLastPathComponents(const Paths& paths)
{
    return eachConverted(paths, [](const HSVNPath& path) { return path.denormalizedLastComponent(); });
}

std::vector<HSVNURLRef> HSVNArray::arrayWithUniqueHostURLsOfPaths(const Paths& paths)
{
    const auto servers = eachConverted(paths, [](const HSVNPath& path) { return path.URL()->hostAndScheme(); });
    std::vector<HSVNURLRef> urls;
    for (const auto& server : std::unordered_set<std::string>{servers.begin(), servers.end()}) {
        urls.push_back(HSVNURL::URLWithString(server));
    }
    return urls;
}

HSVNArray::Paths HSVNArray::arrayWithCanonicalPaths(const Paths& paths)
{
    return eachConverted(paths, [](const HSVNPath& path) { return path.canonicalize(); });
}

HSVNArray::Paths HSVNArray::arrayWithPathsStrippedOfUsers(const Paths& paths)
{
    return eachConverted(paths, [](const HSVNPath& path) { return path.stripUser(); });
}
