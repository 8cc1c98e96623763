#pragma once

#include "HSVNCoder.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

/// How an archive is stored. Both forms hold the same keys and values; either is recognised when it is read.
enum HSVNArchiveFormat : std::int32_t
{
    HSVNArchiveFormatJSON = 0, ///< readable text, UTF-8
    HSVNArchiveFormatCBOR = 1  ///< RFC 8949, smaller and faster
};

/// Writes objects into an archive, every value by its key.
///
/// The encode functions throw `HSVNInvalidArgumentException` naming the key for a key that is used twice in one object
/// or begins with "$", for a text that is not UTF-8 or has a NUL, for an object or exception of a class that archives
/// do not know, and for objects nested deeper than an archive can be (which a cycle always is). Nil values take no
/// room.
class HSVN_EXPORT HSVNKeyedArchiver : public HSVNCoder
{
  public:
    /// An archive without values, to be written in that format.
    explicit HSVNKeyedArchiver(HSVNArchiveFormat format = HSVNArchiveFormatJSON);
    ~HSVNKeyedArchiver() override;

    /// An archive of one object with everything that it holds; not nil ("object != nil").
    static std::string archivedDataWithRootObject(const HSVNArchivableRef& object,
                                                  HSVNArchiveFormat format = HSVNArchiveFormatJSON);

    /// The archive of what has been encoded so far, as bytes.
    std::string encodedData() const;

    bool allowsKeyedCoding() const override { return true; }
    void encodeObject(const HSVNArchivableRef& object, std::string_view key) override;
    void encodeString(const std::optional<std::string>& text, std::string_view key) override;
    void encodeDate(const std::optional<HSVNDate>& date, std::string_view key) override;
    void encodeInteger(std::int64_t number, std::string_view key) override;
    void encodeUnsigned(std::uint64_t number, std::string_view key) override;
    void encodeBool(bool value, std::string_view key) override;
    void encodeException(const HSVNPlatformExceptionRef& exception, std::string_view key) override;

    /// Whether a value has been encoded under the key.
    bool containsValueForKey(std::string_view key) const override;

  private:
    struct Document;

    std::unique_ptr<Document> _document;
};
