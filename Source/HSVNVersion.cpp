#include "HSVNVersion.h"

#include "HSVNTypes.h"
#include "Internal/Characters.h"
#include "Internal/Everlasting.h"

#include <charconv>
#include <fmt/format.h>
#include <limits>
#include <ostream>
#include <sys/utsname.h>
#include <tuple>

namespace {

/// The leading decimal integer, 0 when there is none; a number out of range gives the nearest that is in it.
std::int32_t integerValue(std::string_view text)
{
    text = HSVNText::trimmed(text);
    if (text.starts_with('+') && !text.starts_with("+-")) {
        text.remove_prefix(1);
    }
    std::int32_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error == std::errc::result_out_of_range) {
        return text.starts_with('-') ? std::numeric_limits<std::int32_t>::min()
                                     : std::numeric_limits<std::int32_t>::max();
    }
    return number;
}

template <class Value>
std::int32_t orderOf(const Value& a, const Value& b)
{
    if (a == b) {
        return HSVNOrderedSame;
    }
    return a < b ? HSVNOrderedAscending : HSVNOrderedDescending;
}

bool isZeroOrEqual(std::int32_t pattern, std::int32_t number) { return pattern == 0 || pattern == number; }

constexpr std::uint32_t lowByte(std::int32_t number) { return static_cast<std::uint32_t>(number) & 0xFFU; }

/// The release of the running kernel, such as 6.1; 0.0 where it cannot be asked.
HSVNVersion hostVersion()
{
    utsname host{};
    return HSVNVersion::versionWithString(uname(&host) == 0 ? host.release : "");
}

} // namespace

HSVNVersion::HSVNVersion(std::int32_t major, std::int32_t minor, std::int32_t patch, std::string tag)
    : _major{major}, _minor{minor}, _patch{patch}, _tag{std::move(tag)}
{
}

HSVNVersion HSVNVersion::version(std::int32_t major, std::int32_t minor, std::int32_t patch, std::string tag)
{
    return {major, minor, patch, std::move(tag)};
}

HSVNVersion HSVNVersion::version(std::int32_t major, std::int32_t minor, std::int32_t patch)
{
    return {major, minor, patch};
}

HSVNVersion HSVNVersion::version(std::int32_t major, std::int32_t minor) { return {major, minor}; }

HSVNVersion HSVNVersion::versionWithString(std::string_view text)
{
    const auto words = HSVNText::split(HSVNText::trimmed(text), " ");
    const auto numbers = HSVNText::split(words[0], ".");
    const auto number = [&](std::size_t index) { return index < numbers.size() ? integerValue(numbers[index]) : 0; };
    return {number(0), number(1), number(2), words.size() > 1 ? std::string{words[1]} : std::string{}};
}

const HSVNVersion& HSVNVersion::version1_4()
{
    static const HSVNEverlasting<HSVNVersion> version{1, 4};
    return *version;
}

const HSVNVersion& HSVNVersion::version1_5()
{
    static const HSVNEverlasting<HSVNVersion> version{1, 5};
    return *version;
}

const HSVNVersion& HSVNVersion::version1_6()
{
    static const HSVNEverlasting<HSVNVersion> version{1, 6};
    return *version;
}

std::vector<HSVNVersion> HSVNVersion::wellKnownVersions() { return {version1_4(), version1_5(), version1_6()}; }

const HSVNVersion& HSVNVersion::defaultVersion()
{
    static const bool isRecentHost = hostVersion().major() >= 3;
    return isRecentHost ? version1_6() : version1_4();
}

std::string HSVNVersion::versionString() const
{
    std::string text = fmt::format("{}.{}", _major, _minor);
    if (_patch > 0) {
        text += fmt::format(".{}", _patch);
    }
    return _tag.empty() ? text : text + ' ' + _tag;
}

float HSVNVersion::majorMinor() const
{
    const std::string text = fmt::format("{}.{}", _major, _minor);
    float number = 0;
    std::from_chars(text.data(), text.data() + text.size(), number);
    return number;
}

HSVNVersion HSVNVersion::versionWithMajorAndMinorComponents() const { return {_major, _minor}; }

std::int32_t HSVNVersion::compare(const HSVNVersion& other) const
{
    const auto numbers = [](const HSVNVersion& version) {
        return std::tie(version._major, version._minor, version._patch);
    };
    return numbers(*this) == numbers(other) ? orderOf(_tag, other._tag) : orderOf(numbers(*this), numbers(other));
}

std::size_t HSVNVersion::hash() const
{
    const std::size_t numbers = lowByte(_major) | lowByte(_minor) << 8U | lowByte(_patch) << 16U;
    return _tag.empty() ? numbers : numbers ^ std::hash<std::string>{}(_tag);
}

bool HSVNVersion::matches(const HSVNVersion& pattern) const
{
    return isZeroOrEqual(pattern._major, _major) && isZeroOrEqual(pattern._minor, _minor) &&
           isZeroOrEqual(pattern._patch, _patch) && (pattern._tag.empty() || pattern._tag == _tag);
}

std::ostream& operator<<(std::ostream& stream, const HSVNVersion& version) { return stream << version.versionString(); }
