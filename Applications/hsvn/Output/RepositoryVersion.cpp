#include "Output/RepositoryVersion.h"

#include "CommandLine/Errors.h"
#include "CommandLine/NativeText.h"
#include "CommandLine/Session.h"
#include "CommandLine/TextFiles.h"

#include <cerrno>
#include <cstdlib>
#include <fmt/format.h>
#include <limits>
#include <vector>

namespace {

/// The pieces between the points, empty ones left out.
std::vector<std::string> piecesOf(const std::string& text)
{
    std::vector<std::string> pieces(1);
    for (const char character : text) {
        if (character != '.') {
            pieces.back() += character;
        } else if (!pieces.back().empty()) {
            pieces.emplace_back();
        }
    }
    if (pieces.back().empty()) {
        pieces.pop_back();
    }
    return pieces;
}

/// "1.5" or "1.5.5", with anything after a "-" as a tag.
///
/// @throws HSVNException for a piece that is no number
std::optional<HSVNVersion> parse(const std::string& text)
{
    auto pieces = piecesOf(text);
    if (pieces.size() != 2 && pieces.size() != 3) {
        return std::nullopt;
    }
    std::string tag;
    if (const auto dash = pieces.back().find('-'); pieces.size() == 3 && dash != std::string::npos) {
        tag = pieces.back().substr(dash + 1);
        pieces.back().resize(dash);
    }
    std::vector<std::int32_t> numbers;
    for (const auto& piece : pieces) {
        numbers.push_back(numberOf(piece));
        if (numbers.back() < 0) {
            return std::nullopt;
        }
    }
    return HSVNVersion{numbers[0], numbers[1], numbers.size() == 3 ? numbers[2] : 0, tag};
}

HSVNVersion versionOf(const std::string& text)
{
    const auto message = fmt::format("Failed to parse version number string '{}'", text);
    try {
        if (const auto version = parse(text)) {
            return *version;
        }
    } catch (const HSVNException& exception) {
        fail(MalformedVersion, message, exception);
    }
    fail(MalformedVersion, message);
}

} // namespace

void applyCompatibleVersion(Session& session, Options& options, const std::string& argument)
{
    const HSVNVersion version = versionOf(NativeText::toUTF8(argument));
    const HSVNVersion release{version.major(), version.minor(), version.patch()};
    const bool isBeforeRelease = !version.tag().empty();
    const HSVNVersion oldest{1, 0};
    if (release.isLessThan(oldest) || (isBeforeRelease && release.isEqual(oldest))) {
        fail(UnsupportedFeature, "Cannot create pre-1.0-compatible repositories");
    }
    const HSVNVersion current = session.context()->bundleVersion().value_or(HSVNVersion::newestWellknownVersion());
    if (release.isGreaterThan({current.major(), current.minor(), current.patch()})) {
        fail(UnsupportedFeature, fmt::format("Cannot guarantee compatibility beyond the current running version ({})",
                                             current.versionString()));
    }
    options.compatibleVersion = release;
}
