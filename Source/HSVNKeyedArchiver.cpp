#include "HSVNKeyedArchiver.h"

#include "Internal/ArchivableClasses.h"
#include "Internal/Archive.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <utility>

using nlohmann::ordered_json; // keeps the order in which the classes write their keys

namespace {

void requireText(std::string_view text, std::string_view key)
{
    if (!HSVNIsArchivableText(text)) {
        HSVNFailArchive(fmt::format("Value of {} is not UTF-8 or contains NUL", HSVNArchiveQuoted(key)));
    }
}

void requireDepth(std::size_t depth, std::string_view key)
{
    if (depth > HSVNArchiveMaximumDepth) {
        HSVNFailArchive(fmt::format("Value of {} is nested deeper than {} levels, or holds itself",
                                    HSVNArchiveQuoted(key), HSVNArchiveMaximumDepth));
    }
}

ordered_json encodedUserInfo(const HSVNUserInfo& userInfo, std::size_t depth)
{
    auto encoded = ordered_json::object();
    for (const auto& [key, value] : userInfo) {
        requireText(key, HSVNArchiveUserInfoKey);
        if (const auto* text = value.text()) {
            requireText(*text, key);
            encoded.push_back({key, *text});
        } else if (const auto* number = value.number()) {
            encoded.push_back({key, *number});
        } else if (const auto* dictionary = value.dictionary()) {
            requireDepth(depth + 1, key);
            encoded.push_back({key, encodedUserInfo(*dictionary, depth + 1)});
        }
    }
    return encoded;
}

} // namespace

struct HSVNKeyedArchiver::Document
{
    HSVNArchiveFormat format;
    ordered_json root;
    ordered_json* object = nullptr; // the one being encoded
    std::size_t depth = 1;          // of that one

    void put(std::string_view key, ordered_json value)
    {
        if (key.empty() || key.starts_with('$') || !HSVNIsArchivableText(key)) {
            HSVNFailArchive(fmt::format("{} cannot be a key of an archive", HSVNArchiveQuoted(key)));
        }
        if (object->contains(key)) {
            HSVNFailArchive(fmt::format("The key {} is used twice in one object", HSVNArchiveQuoted(key)));
        }
        object->push_back({std::string{key}, std::move(value)});
    }

    /// Makes another object the one being encoded for a scope.
    class Scope
    {
      public:
        Scope(Document& document, ordered_json& object)
            : _document{document}, _outer{std::exchange(document.object, &object)}
        {
            ++_document.depth;
        }
        ~Scope()
        {
            _document.object = _outer;
            --_document.depth;
        }
        Scope(const Scope&) = delete;
        Scope& operator=(const Scope&) = delete;

      private:
        Document& _document;
        ordered_json* _outer;
    };
};

HSVNKeyedArchiver::HSVNKeyedArchiver(HSVNArchiveFormat format)
    : _document{std::make_unique<Document>(Document{format, ordered_json::object()})}
{
    _document->object = &_document->root;
    _document->root[HSVNArchiveArchiverKey] = HSVNArchiveArchiver;
    _document->root[HSVNArchiveVersionKey] = HSVNArchiveVersion;
}

HSVNKeyedArchiver::~HSVNKeyedArchiver() = default;

std::string HSVNKeyedArchiver::archivedDataWithRootObject(const HSVNArchivableRef& object, HSVNArchiveFormat format)
{
    HSVNAssertParameter(object != nullptr, "object != nil");
    HSVNKeyedArchiver archiver{format};
    archiver.encodeObject(object, HSVNArchiveRootKey);
    return archiver.encodedData();
}

std::string HSVNKeyedArchiver::encodedData() const
{
    if (_document->format == HSVNArchiveFormatJSON) {
        return _document->root.dump();
    }
    std::string data;
    ordered_json::to_cbor(_document->root, data);
    return data;
}

void HSVNKeyedArchiver::encodeObject(const HSVNArchivableRef& object, std::string_view key)
{
    if (!object) {
        return;
    }
    const std::string className = object->className();
    if (!HSVNArchivableClassNamed(className)) {
        HSVNFailArchive(fmt::format("Value of {} has a class that archives do not know: {}", HSVNArchiveQuoted(key),
                                    HSVNArchiveQuoted(className)));
    }
    requireDepth(_document->depth + 1, key);
    ordered_json encoded{{HSVNArchiveClassKey, className}};
    {
        const Document::Scope scope{*_document, encoded};
        object->encodeWithCoder(this);
    }
    _document->put(key, std::move(encoded));
}

void HSVNKeyedArchiver::encodeString(const std::optional<std::string>& text, std::string_view key)
{
    if (text) {
        requireText(*text, key);
        _document->put(key, *text);
    }
}

void HSVNKeyedArchiver::encodeDate(const std::optional<HSVNDate>& date, std::string_view key)
{
    if (date) {
        requireDepth(_document->depth + 1, key);
        _document->put(key, {{HSVNArchiveDateKey, date->microsecondsSince1970()}});
    }
}

void HSVNKeyedArchiver::encodeInteger(std::int64_t number, std::string_view key) { _document->put(key, number); }

void HSVNKeyedArchiver::encodeUnsigned(std::uint64_t number, std::string_view key) { _document->put(key, number); }

void HSVNKeyedArchiver::encodeBool(bool value, std::string_view key) { _document->put(key, value); }

void HSVNKeyedArchiver::encodeException(const HSVNPlatformExceptionRef& exception, std::string_view key)
{
    if (!exception) {
        return;
    }
    const std::string className = exception->className();
    if (!HSVNIsArchivableException(className)) {
        HSVNFailArchive(fmt::format("Value of {} is an exception of a class that archives do not know: {}",
                                    HSVNArchiveQuoted(key), HSVNArchiveQuoted(className)));
    }
    requireText(exception->name(), key);
    requireText(exception->reason(), key);
    requireDepth(_document->depth + 2, key);
    _document->put(key, {{HSVNArchiveExceptionKey, className},
                         {HSVNArchiveNameKey, exception->name()},
                         {HSVNArchiveReasonKey, exception->reason()},
                         {HSVNArchiveUserInfoKey, encodedUserInfo(exception->userInfo(), _document->depth + 2)}});
}

bool HSVNKeyedArchiver::containsValueForKey(std::string_view key) const { return _document->object->contains(key); }
