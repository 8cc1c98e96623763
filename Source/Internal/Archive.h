#pragma once

#include <nlohmann/json_fwd.hpp>

#include <cstddef>
#include <string>
#include <string_view>

// What the archiver and the unarchiver agree on. An archive is a JSON object, or the CBOR map of the same content:
//
//   {"$archiver": "HSVNKeyedArchiver", "$version": 1, "root": {"$class": "HSVNNumberedRevision", "number": 5}}
//
// A date is {"$date": microseconds}, an exception {"$exception": class name, "reason": ..., "userInfo": {...}}; texts,
// whole numbers and booleans are themselves. There are no arrays.

inline constexpr const char* HSVNArchiveArchiverKey = "$archiver";
inline constexpr const char* HSVNArchiveArchiver = "HSVNKeyedArchiver";
inline constexpr const char* HSVNArchiveVersionKey = "$version";
inline constexpr int HSVNArchiveVersion = 1;
inline constexpr const char* HSVNArchiveRootKey = "root";
inline constexpr const char* HSVNArchiveClassKey = "$class";
inline constexpr const char* HSVNArchiveDateKey = "$date";
inline constexpr const char* HSVNArchiveExceptionKey = "$exception";
inline constexpr const char* HSVNArchiveNameKey = "name";
inline constexpr const char* HSVNArchiveReasonKey = "reason";
inline constexpr const char* HSVNArchiveUserInfoKey = "userInfo";

/// Containers within containers; bounds the recursion of both directions.
inline constexpr std::size_t HSVNArchiveMaximumDepth = 256;

/// Whether a text may stand in an archive: UTF-8 without NUL, since it may end up as a C string.
bool HSVNIsArchivableText(std::string_view text);

/// @throws HSVNInvalidArgumentException of this reason
[[noreturn]] void HSVNFailArchive(std::string reason);

/// A text quoted for a message, cut when it is long.
std::string HSVNArchiveQuoted(std::string_view text);

/// The content of an archive in either format: objects, texts, numbers, booleans and nulls, no deeper than the maximum.
///
/// @throws HSVNInvalidArgumentException for data that is anything else
nlohmann::json HSVNParseArchive(std::string_view data);
