#pragma once

#include "HSVNDate.h"
#include "HSVNExport.h"
#include "HSVNObject.h"
#include "HSVNPlatformException.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

class HSVNCoder;

/// An object that a keyed archive can store.
///
/// A class that implements it has a constructor `explicit Class(HSVNCoder* decoder)` and a line in the table of
/// archivable classes (HSVNArchivableClasses.cpp).
class HSVN_EXPORT HSVNArchivable : public HSVNObject
{
  public:
    /// Writes the object's fields.
    ///
    /// @throws an assertion "Invalid parameter not satisfying: encoder != nil" for null, an invalid-argument exception
    ///         "Keyed archiver required" for a coder without keys
    virtual void encodeWithCoder(HSVNCoder* encoder) const = 0;

  protected:
    HSVNArchivable() = default;
    HSVNArchivable(const HSVNArchivable&) = default;
    HSVNArchivable(HSVNArchivable&&) = default;
    HSVNArchivable& operator=(const HSVNArchivable&) = default;
    HSVNArchivable& operator=(HSVNArchivable&&) = default;
};

using HSVNArchivableRef = std::shared_ptr<const HSVNArchivable>;

/// Both directions of an archive: values by key. A coder is used by one thread.
///
/// The decode functions throw `HSVNInvalidArgumentException` naming the key when the stored value has another type or
/// does not fit; a missing key decodes as nil, 0 or false unless the function says otherwise. A coder that only encodes
/// throws for decode calls and the other way round.
class HSVN_EXPORT HSVNCoder
{
  public:
    HSVNCoder() = default;
    HSVNCoder(const HSVNCoder&) = delete;
    HSVNCoder& operator=(const HSVNCoder&) = delete;
    virtual ~HSVNCoder();

    /// Whether values are stored by key; the library's classes refuse coders that answer false.
    virtual bool allowsKeyedCoding() const = 0;

    virtual void encodeObject(const HSVNArchivableRef& object, std::string_view key) = 0;
    virtual void encodeString(const std::optional<std::string>& text, std::string_view key) = 0;
    virtual void encodeDate(const std::optional<HSVNDate>& date, std::string_view key) = 0;
    virtual void encodeInteger(std::int64_t number, std::string_view key) = 0;
    /// For sizes above the signed range.
    virtual void encodeUnsigned(std::uint64_t number, std::string_view key) = 0;
    virtual void encodeBool(bool value, std::string_view key) = 0;
    virtual void encodeException(const HSVNPlatformExceptionRef& exception, std::string_view key) = 0;

    /// Whether the object being decoded has a value under the key.
    virtual bool containsValueForKey(std::string_view key) const = 0;
    /// The object under the key, made anew; nil when absent.
    virtual std::shared_ptr<HSVNArchivable> decodeAnyObject(std::string_view key) = 0;
    virtual std::optional<std::string> decodeString(std::string_view key) = 0;
    virtual std::optional<HSVNDate> decodeDate(std::string_view key) = 0;
    virtual std::int64_t decodeInteger(std::string_view key) = 0;
    virtual std::uint64_t decodeUnsigned(std::string_view key) = 0;
    virtual bool decodeBool(std::string_view key) = 0;
    virtual HSVNPlatformExceptionRef decodeException(std::string_view key) = 0;

    /// A number that must fit 32 bits.
    std::int32_t decodeInt32(std::string_view key);
    /// The object under the key when it is a `Class` or a subclass; nil when absent.
    ///
    /// @throws HSVNInvalidArgumentException for an object of another class
    template <class Class>
    std::shared_ptr<Class> decodeObject(std::string_view key)
    {
        auto object = decodeAnyObject(key);
        auto typed = std::dynamic_pointer_cast<Class>(object);
        if (object && !typed) {
            failClass(key, *object);
        }
        return typed;
    }
    /// The same for a key that must be there.
    template <class Class>
    std::shared_ptr<Class> decodeRequiredObject(std::string_view key)
    {
        auto object = decodeObject<Class>(key);
        if (!object) {
            failMissing(key);
        }
        return object;
    }
    /// A number that must be there and fit 32 bits.
    std::int32_t decodeRequiredInt32(std::string_view key);
    /// A text that must be there.
    std::string decodeRequiredString(std::string_view key);
    /// A date that must be there.
    HSVNDate decodeRequiredDate(std::string_view key);

  protected:
    /// The key as messages name it, with the class that is being decoded where the coder knows it.
    virtual std::string describeKey(std::string_view key) const;

  private:
    [[noreturn]] void failClass(std::string_view key, const HSVNArchivable& object) const;
    [[noreturn]] void failMissing(std::string_view key) const;
};

/// Preconditions of `encodeWithCoder`: a coder ("encoder != nil") with keys ("Keyed archiver required").
HSVN_EXPORT void HSVNRequireKeyedArchiver(const HSVNCoder* encoder);
/// Preconditions of a decoding constructor: a coder ("decoder != nil") with keys ("Keyed unarchiver required").
///
/// @return the decoder, so that a member initialiser can test and use it
HSVN_EXPORT HSVNCoder* HSVNRequireKeyedUnarchiver(HSVNCoder* decoder);
