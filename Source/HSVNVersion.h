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
    /// The numbers and the tag as given, negative numbers included. A tag is any UTF-8 text, empty for none.
    HSVNVersion(std::int32_t major, std::int32_t minor, std::int32_t patch = 0, std::string tag = {});

    /// The constructor by another name; a patch that is not given is 0, a tag that is not given empty.
    static HSVNVersion version(std::int32_t major, std::int32_t minor, std::int32_t patch, std::string tag);
    /// The same without a tag.
    static HSVNVersion version(std::int32_t major, std::int32_t minor, std::int32_t patch);
    /// The same with the patch 0 and without a tag.
    static HSVNVersion version(std::int32_t major, std::int32_t minor);
    /// Parses "MAJOR.MINOR.PATCH TAG"; every text gives a version, missing numbers are 0.
    static HSVNVersion versionWithString(std::string_view text);

    /// 1.4.0 without a tag.
    static const HSVNVersion& version1_4();
    /// 1.5.0 without a tag.
    static const HSVNVersion& version1_5();
    /// 1.6.0 without a tag.
    static const HSVNVersion& version1_6();
    /// 1.4, 1.5 and 1.6, oldest first.
    static std::vector<HSVNVersion> wellKnownVersions();
    /// The first of `wellKnownVersions`: 1.4.
    static const HSVNVersion& oldestWellknownVersion() { return version1_4(); }
    /// The last of `wellKnownVersions`: 1.6.
    static const HSVNVersion& newestWellknownVersion() { return version1_6(); }
    /// 1.6 on hosts whose kernel is new enough for it, else 1.4; 1.5 is never the default.
    static const HSVNVersion& defaultVersion();

    /// The first number: 1 of 1.6.5.
    std::int32_t major() const { return _major; }
    /// The second number: 6 of 1.6.5.
    std::int32_t minor() const { return _minor; }
    /// The third number: 5 of 1.6.5; 0 when none was given.
    std::int32_t patch() const { return _patch; }
    /// What follows the numbers, such as "dev"; empty for none.
    const std::string& tag() const { return _tag; }

    /// "1.6.5", without the patch when it is not positive, followed by a blank and the tag when there is one.
    std::string versionString() const;
    /// `versionString`.
    std::string description() const { return versionString(); }
    /// The text "MAJOR.MINOR" as a number, so 1.10 gives 1.1.
    float majorMinor() const;
    /// This version with the patch 0 and without the tag: the line it belongs to.
    HSVNVersion versionWithMajorAndMinorComponents() const;

    /// -1, 0 or 1: by major, minor, patch, then tag.
    std::int32_t compare(const HSVNVersion& other) const;
    /// Whether `compare` answers -1.
    bool isLessThan(const HSVNVersion& other) const { return compare(other) < 0; }
    /// Whether `compare` answers -1 or 0.
    bool isLessThanOrEqualTo(const HSVNVersion& other) const { return compare(other) <= 0; }
    /// Whether `compare` answers 1.
    bool isGreaterThan(const HSVNVersion& other) const { return compare(other) > 0; }
    /// Whether `compare` answers 0 or 1.
    bool isGreaterThanOrEqualTo(const HSVNVersion& other) const { return compare(other) >= 0; }
    /// Equality of the numbers and of the tag.
    bool isEqualToVersion(const HSVNVersion& other) const { return compare(other) == 0; }
    /// The same.
    bool isEqual(const HSVNVersion& other) const { return isEqualToVersion(other); }
    /// Equal versions have equal hashes.
    std::size_t hash() const;
    /// Whether this version fits the pattern.
    bool matches(const HSVNVersion& pattern) const;
    /// An equal version.
    HSVNVersion copy() const { return *this; }

    /// `isEqualToVersion` as an operator.
    friend bool operator==(const HSVNVersion& a, const HSVNVersion& b) { return a.compare(b) == 0; }
    /// `compare` as an operator.
    friend std::strong_ordering operator<=>(const HSVNVersion& a, const HSVNVersion& b) { return a.compare(b) <=> 0; }

  private:
    std::int32_t _major;
    std::int32_t _minor;
    std::int32_t _patch;
    std::string _tag;
};

/// For unordered containers: by `hash`.
template <>
struct std::hash<HSVNVersion>
{
    std::size_t operator()(const HSVNVersion& version) const noexcept { return version.hash(); }
};

/// Writes the `versionString`.
HSVN_EXPORT std::ostream& operator<<(std::ostream& stream, const HSVNVersion& version);
