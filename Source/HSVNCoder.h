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
/// A class that implements it has a constructor `explicit Class(HSVNCoder* decoder)`. The library's archives hold
/// objects of the library's classes. An application's own object writes its fields into a `HSVNKeyedArchiver` by
/// `encodeWithCoder` and is made again with a `HSVNKeyedUnarchiver`; within another object, or as the root, it is
/// refused.
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
/// does not fit; a missing key decodes as nil, 0 or false unless the function says otherwise. A coder supplies the
/// functions of its direction, one that decodes `containsValueForKey`, too; the others throw
/// `HSVNInvalidArgumentException`, which names the function.
class HSVN_EXPORT HSVNCoder
{
  public:
    HSVNCoder() = default;
    HSVNCoder(const HSVNCoder&) = delete;
    HSVNCoder& operator=(const HSVNCoder&) = delete;
    virtual ~HSVNCoder();

    /// Whether values are stored by key; the library's classes refuse coders that answer false.
    virtual bool allowsKeyedCoding() const = 0;

    /// Stores an object with everything that it holds; nil stores nothing, here as in the other functions.
    virtual void encodeObject(const HSVNArchivableRef& object, std::string_view key);
    /// Stores a text, UTF-8.
    virtual void encodeString(const std::optional<std::string>& text, std::string_view key);
    /// Stores a date to the microsecond.
    virtual void encodeDate(const std::optional<HSVNDate>& date, std::string_view key);
    /// Stores a whole number.
    virtual void encodeInteger(std::int64_t number, std::string_view key);
    /// For sizes above the signed range.
    virtual void encodeUnsigned(std::uint64_t number, std::string_view key);
    /// Stores a truth value.
    virtual void encodeBool(bool value, std::string_view key);
    /// Stores an exception: class, name, reason and user information.
    virtual void encodeException(const HSVNPlatformExceptionRef& exception, std::string_view key);

    /// Whether the object being decoded has a value under the key.
    virtual bool containsValueForKey(std::string_view key) const;
    /// The object under the key, made anew; nil when absent.
    virtual std::shared_ptr<HSVNArchivable> decodeAnyObject(std::string_view key);
    /// The text under the key; nil when absent.
    virtual std::optional<std::string> decodeString(std::string_view key);
    /// The date under the key; nil when absent.
    virtual std::optional<HSVNDate> decodeDate(std::string_view key);
    /// The number under the key; 0 when absent.
    virtual std::int64_t decodeInteger(std::string_view key);
    /// The number under the key, which must not be negative; 0 when absent.
    virtual std::uint64_t decodeUnsigned(std::string_view key);
    /// The truth value under the key; false when absent.
    virtual bool decodeBool(std::string_view key);
    /// The exception under the key, of its own class again; nil when absent.
    virtual HSVNPlatformExceptionRef decodeException(std::string_view key);

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
