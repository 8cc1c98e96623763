#include "HSVNTypeRegistry.h"

#include "HSVNException.h"
#include "HSVNPackage.h"
#include "Internal/Characters.h"
#include "Internal/Everlasting.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdint>
#include <fstream>
#include <set>
#include <stdexcept>

namespace {

using Json = nlohmann::json;
using Identifiers = std::vector<std::string>;
using IdentifiersByText = std::map<std::string, Identifiers, std::less<>>;

Json parsedTable(const std::string& file)
{
    std::ifstream stream{file, std::ios::binary};
    if (!stream) {
        throw std::runtime_error("it cannot be opened");
    }
    return Json::parse(stream);
}

/// The tag as it is compared: in small letters, a MIME type without its parameters.
std::string normalizedTag(HSVNTypeTagClass tagClass, std::string_view tag)
{
    if (tagClass == HSVNTypeTagClass::MIMEType) {
        tag = HSVNText::trimmed(tag.substr(0, tag.find(';')));
    }
    std::string lowered{tag};
    std::ranges::transform(lowered, lowered.begin(),
                           [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return lowered;
}

void addTags(IdentifiersByText& types, HSVNTypeTagClass tagClass, const Json& type, const char* key)
{
    for (const auto& tag : type.value(key, Identifiers{})) {
        types[normalizedTag(tagClass, tag)].push_back(type.at("identifier"));
    }
}

/// Throws unless every type that the given one conforms to is declared and none of them is a type that led here.
void checkConformances(const IdentifiersByText& conformances, const std::string& identifier,
                       std::set<std::string>& sound, Identifiers& path)
{
    if (sound.contains(identifier)) {
        return;
    }
    if (std::ranges::find(path, identifier) != path.end()) {
        throw std::runtime_error(fmt::format("\"{}\" conforms to itself", identifier));
    }
    const auto type = conformances.find(identifier);
    if (type == conformances.end()) {
        throw std::runtime_error(fmt::format("\"{}\" is not declared", identifier));
    }
    path.push_back(identifier);
    for (const auto& other : type->second) {
        checkConformances(conformances, other, sound, path);
    }
    path.pop_back();
    sound.insert(identifier);
}

/// Five bits a letter, so that any tag makes up an identifier.
std::string encodedInBase32(std::string_view text)
{
    constexpr std::string_view digits = "abcdefghijklmnopqrstuvwxyz234567";
    std::string encoded;
    std::uint32_t bits = 0;
    unsigned count = 0;
    for (const char letter : text) {
        bits = (bits << 8U | static_cast<unsigned char>(letter)) & 0xFFFU;
        for (count += 8; count >= 5; count -= 5) {
            encoded += digits[bits >> (count - 5) & 31U];
        }
    }
    return count > 0 ? encoded + digits[bits << (5 - count) & 31U] : encoded;
}

} // namespace

HSVNTypeRegistry::HSVNTypeRegistry(const std::string& file)
{
    try {
        const Json table = parsedTable(file);
        for (const auto& type : table.at("types")) {
            const auto identifier = type.at("identifier").get<std::string>();
            if (!_conformances.emplace(identifier, type.value("conformsTo", Identifiers{})).second) {
                throw std::runtime_error(fmt::format("\"{}\" is declared twice", identifier));
            }
            addTags(_typesByExtension, HSVNTypeTagClass::filenameExtension, type, "extensions");
            addTags(_typesByMIMEType, HSVNTypeTagClass::MIMEType, type, "mimeTypes");
        }
        std::set<std::string> sound;
        Identifiers path;
        for (const auto& type : _conformances) {
            checkConformances(_conformances, type.first, sound, path);
        }
    } catch (const std::exception& exception) {
        throw HSVNException(fmt::format("Failed to load the type table at {}: {}", file, exception.what()));
    }
}

const HSVNTypeRegistry& HSVNTypeRegistry::sharedRegistry()
{
    static const HSVNEverlasting<HSVNTypeRegistry> registry{HSVNPackage::libraryPath() +
                                                            "/Versions/A/Resources/TypeIdentifiers.json"};
    return *registry;
}

std::string HSVNTypeRegistry::preferredIdentifierForTag(HSVNTypeTagClass tagClass, std::string_view tag,
                                                        std::string_view conformingTo) const
{
    const bool isMIMEType = tagClass == HSVNTypeTagClass::MIMEType;
    const auto& types = isMIMEType ? _typesByMIMEType : _typesByExtension;
    const auto key = normalizedTag(tagClass, tag);
    if (const auto found = types.find(key); found != types.end()) {
        for (const auto& identifier : found->second) {
            if (conforms(identifier, conformingTo)) {
                return identifier;
            }
        }
    }
    return "dyn.a" + encodedInBase32(fmt::format("{}:{}={}", conformingTo, isMIMEType ? "mime" : "ext", key));
}

bool HSVNTypeRegistry::conforms(std::string_view identifier, std::string_view other) const
{
    if (identifier == other) {
        return true;
    }
    const auto type = _conformances.find(identifier);
    return type != _conformances.end() &&
           std::ranges::any_of(type->second, [&](const std::string& direct) { return conforms(direct, other); });
}

std::vector<std::string> HSVNTypeRegistry::identifiers() const
{
    std::vector<std::string> names;
    names.reserve(_conformances.size());
    for (const auto& type : _conformances) {
        names.push_back(type.first);
    }
    return names;
}
