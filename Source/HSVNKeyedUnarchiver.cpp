#include "HSVNKeyedUnarchiver.h"

#include "Internal/ArchivableClasses.h"
#include "Internal/Archive.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <limits>
#include <utility>

using nlohmann::json;

namespace {

[[noreturn]] void failType(const std::string& keyDescription, std::string_view expected)
{
    HSVNFailArchive(fmt::format("Value of {} is not {}", keyDescription, expected));
}

/// Passes a fault on that already names the class, and names it in any other.
[[noreturn]] void failDecoding(const std::string& className, const HSVNPlatformException& fault)
{
    const bool isNamed = fault.reason().find(className) != std::string::npos;
    HSVNFailArchive(isNamed ? fault.reason() : fmt::format("Archived {} is not valid: {}", className, fault.reason()));
}

/// The value under the key; null when there is none.
const json* valueForKey(const json& object, std::string_view key)
{
    const auto place = object.find(key);
    return place == object.end() || place->is_null() ? nullptr : &*place;
}

/// A whole number of 64 bits.
std::int64_t integerValue(const json& value, const std::string& keyDescription)
{
    if (!value.is_number_integer() ||
        (value.is_number_unsigned() &&
         value.get<std::uint64_t>() > std::uint64_t{std::numeric_limits<std::int64_t>::max()}))
    {
        failType(keyDescription, "a whole number of 64 bits");
    }
    return value.get<std::int64_t>();
}

HSVNUserInfo decodedUserInfo(const json& object)
{
    HSVNUserInfo userInfo;
    for (const auto& [key, value] : object.get_ref<const json::object_t&>()) {
        if (value.is_string()) {
            userInfo.emplace(key, value.get<std::string>());
        } else if (value.is_object()) {
            userInfo.emplace(key, std::make_shared<const HSVNUserInfo>(decodedUserInfo(value)));
        } else {
            userInfo.emplace(key, integerValue(value, HSVNArchiveQuoted(key)));
        }
    }
    return userInfo;
}

} // namespace

struct HSVNKeyedUnarchiver::Document
{
    json root;
    const json* object = nullptr; // the one being decoded

    const json* value(std::string_view key) const { return valueForKey(*object, key); }

    /// Makes another object the one being decoded for a scope.
    class Scope
    {
      public:
        Scope(Document& document, const json& object)
            : _document{document}, _outer{std::exchange(document.object, &object)}
        {
        }
        ~Scope() { _document.object = _outer; }
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;

      private:
        Document& _document;
        const json* _outer;
    };
};

HSVNKeyedUnarchiver::HSVNKeyedUnarchiver(std::string_view data)
    : _document{std::make_unique<Document>(Document{HSVNParseArchive(data)})}
{
    _document->object = &_document->root;
    const auto* archiver = _document->value(HSVNArchiveArchiverKey);
    if (!archiver || *archiver != HSVNArchiveArchiver) {
        HSVNFailArchive("Data is not an archive of HSVNKeyedArchiver");
    }
    const auto* version = _document->value(HSVNArchiveVersionKey);
    if (!version || *version != HSVNArchiveVersion) {
        HSVNFailArchive(fmt::format("Archive is not of version {}", HSVNArchiveVersion));
    }
}

HSVNKeyedUnarchiver::~HSVNKeyedUnarchiver() = default;

std::shared_ptr<HSVNArchivable> HSVNKeyedUnarchiver::unarchiveObjectWithData(std::string_view data)
{
    return unarchiveObjectOfClass<HSVNArchivable>(data);
}

bool HSVNKeyedUnarchiver::containsValueForKey(std::string_view key) const { return _document->value(key) != nullptr; }

std::shared_ptr<HSVNArchivable> HSVNKeyedUnarchiver::decodeAnyObject(std::string_view key)
{
    const auto* value = _document->value(key);
    if (!value) {
        return nullptr;
    }
    const auto* className = value->is_object() ? valueForKey(*value, HSVNArchiveClassKey) : nullptr;
    if (!className || !className->is_string()) {
        failType(describeKey(key), "an object with a class");
    }
    const auto& name = className->get_ref<const std::string&>();
    const auto maker = HSVNArchivableClassNamed(name);
    if (!maker) {
        HSVNFailArchive(fmt::format("Value of {} has an unknown class: {}", describeKey(key), HSVNArchiveQuoted(name)));
    }
    const Document::Scope scope{*_document, *value};
    try {
        return maker(this);
    } catch (const HSVNPlatformException& exception) { // an assertion among others
        failDecoding(name, exception);
    }
}

std::optional<std::string> HSVNKeyedUnarchiver::decodeString(std::string_view key)
{
    const auto* value = _document->value(key);
    if (!value) {
        return std::nullopt;
    }
    if (!value->is_string()) {
        failType(describeKey(key), "a text");
    }
    return value->get<std::string>();
}

std::optional<HSVNDate> HSVNKeyedUnarchiver::decodeDate(std::string_view key)
{
    const auto* value = _document->value(key);
    if (!value) {
        return std::nullopt;
    }
    const auto* microseconds = value->is_object() ? valueForKey(*value, HSVNArchiveDateKey) : nullptr;
    if (!microseconds) {
        failType(describeKey(key), "a date");
    }
    return HSVNDate{integerValue(*microseconds, describeKey(key))};
}

std::int64_t HSVNKeyedUnarchiver::decodeInteger(std::string_view key)
{
    const auto* value = _document->value(key);
    return value ? integerValue(*value, describeKey(key)) : 0;
}

std::uint64_t HSVNKeyedUnarchiver::decodeUnsigned(std::string_view key)
{
    const auto* value = _document->value(key);
    if (!value) {
        return 0;
    }
    if (!value->is_number_integer() || (!value->is_number_unsigned() && value->get<std::int64_t>() < 0)) {
        failType(describeKey(key), "a whole number of 64 bits without sign");
    }
    return value->get<std::uint64_t>();
}

bool HSVNKeyedUnarchiver::decodeBool(std::string_view key)
{
    const auto* value = _document->value(key);
    if (value && !value->is_boolean()) {
        failType(describeKey(key), "a boolean");
    }
    return value && value->get<bool>();
}

HSVNPlatformExceptionRef HSVNKeyedUnarchiver::decodeException(std::string_view key)
{
    const auto* value = _document->value(key);
    if (!value) {
        return nullptr;
    }
    if (!value->is_object()) {
        failType(describeKey(key), "an exception");
    }
    const Document::Scope scope{*_document, *value};
    const auto className = decodeRequiredString(HSVNArchiveExceptionKey);
    const auto* userInfo = _document->value(HSVNArchiveUserInfoKey);
    if (userInfo && !userInfo->is_object()) {
        failType(describeKey(HSVNArchiveUserInfoKey), "a dictionary");
    }
    auto exception = HSVNMakeArchivedException(className, decodeRequiredString(HSVNArchiveNameKey),
                                               decodeRequiredString(HSVNArchiveReasonKey),
                                               userInfo ? decodedUserInfo(*userInfo) : HSVNUserInfo{});
    if (!exception) {
        HSVNFailArchive(fmt::format("Value of {} is an exception of an unknown class: {}", HSVNArchiveQuoted(key),
                                    HSVNArchiveQuoted(className)));
    }
    return exception;
}

std::string HSVNKeyedUnarchiver::describeKey(std::string_view key) const
{
    const auto* className = _document->value(HSVNArchiveClassKey);
    return className && className->is_string()
               ? fmt::format("{} of {}", HSVNArchiveQuoted(key), className->get_ref<const std::string&>())
               : HSVNArchiveQuoted(key);
}
