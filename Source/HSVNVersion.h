#pragma once

#include "HSVNExport.h"
#include "HSVNObject.h"

#include <compare>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

/// A release of Subversion: major, minor and patch numbers and a free-text tag. An immutable value.
///
/// A version also serves as a pattern (`matches`): zero numbers and an empty tag are wildcards.
class HSVN_EXPORT HSVNVersion
{
  public:
    HSVNVersion(std::int32_t major, std::int32_t minor, std::int32_t patch = 0, std::string tag = {});

    static HSVNVersion version(std::int32_t major, std::int32_t minor, std::int32_t patch, std::string tag);
    static HSVNVersion version(std::int32_t major, std::int32_t minor, std::int32_t patch);
    static HSVNVersion version(std::int32_t major, std::int32_t minor);
    /// Parses "MAJOR.MINOR.PATCH TAG"; every text gives a version, missing numbers are 0.
    static HSVNVersion versionWithString(std::string_view text);

    static const HSVNVersion& version1_4();
    static const HSVNVersion& version1_5();
    static const HSVNVersion& version1_6();
    /// 1.4, 1.5 and 1.6, oldest first.
    static std::vector<HSVNVersion> wellKnownVersions();
    static const HSVNVersion& oldestWellknownVersion() { return version1_4(); }
    static const HSVNVersion& newestWellknownVersion() { return version1_6(); }
    /// 1.6 on hosts whose kernel is new enough for it, else 1.4; 1.5 is never the default.
    static const HSVNVersion& defaultVersion();

    std::int32_t major() const { return _major; }
    std::int32_t minor() const { return _minor; }
    std::int32_t patch() const { return _patch; }
    const std::string& tag() const { return _tag; }

    /// "1.6.5", without the patch when it is not positive, followed by a blank and the tag when there is one.
    std::string versionString() const;
    std::string description() const { return versionString(); }
    /// The text "MAJOR.MINOR" as a number, so 1.10 gives 1.1.
    float majorMinor() const;
    HSVNVersion versionWithMajorAndMinorComponents() const;

    /// -1, 0 or 1: by major, minor, patch, then tag.
    std::int32_t compare(const HSVNVersion& other) const;
    bool isLessThan(const HSVNVersion& other) const { return compare(other) < 0; }
    bool isLessThanOrEqualTo(const HSVNVersion& other) const { return compare(other) <= 0; }
    bool isGreaterThan(const HSVNVersion& other) const { return compare(other) > 0; }
    bool isGreaterThanOrEqualTo(const HSVNVersion& other) const { return compare(other) >= 0; }
    bool isEqualToVersion(const HSVNVersion& other) const { return compare(other) == 0; }
    bool isEqual(const HSVNVersion& other) const { return isEqualToVersion(other); }
    std::size_t hash() const;
    /// Whether this version fits the pattern.
    bool matches(const HSVNVersion& pattern) const;
    HSVNVersion copy() const { return *this; }

    friend bool operator==(const HSVNVersion& a, const HSVNVersion& b) { return a.compare(b) == 0; }
    friend std::strong_ordering operator<=>(const HSVNVersion& a, const HSVNVersion& b) { return a.compare(b) <=> 0; }

  private:
    std::int32_t _major;
    std::int32_t _minor;
    std::int32_t _patch;
    std::string _tag;
};

template <>
struct std::hash<HSVNVersion>
{
    std::size_t operator()(const HSVNVersion& version) const noexcept { return version.hash(); }
};

HSVN_EXPORT std::ostream& operator<<(std::ostream& stream, const HSVNVersion& version);
