#pragma once

#include "HSVNCoder.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

/// Reads objects out of an archive in either format.
///
/// An archive is untrusted input. Whatever is wrong with it (damage, a key that occurs twice, too deep a nesting, an
/// unknown class, a value that is missing, of another type or out of its range) is an `HSVNInvalidArgumentException`
/// that names the key or the class, and no object is made.
class HSVN_EXPORT HSVNKeyedUnarchiver : public HSVNCoder
{
  public:
    /// Reads an archive; its root object is under the key "root".
    explicit HSVNKeyedUnarchiver(std::string_view data);
    ~HSVNKeyedUnarchiver() override;

    /// The object that `HSVNKeyedArchiver::archivedDataWithRootObject` stored; never nil.
    static std::shared_ptr<HSVNArchivable> unarchiveObjectWithData(std::string_view data);
    /// The same for an object that must be a `Class` or a subclass.
    template <class Class>
    static std::shared_ptr<Class> unarchiveObjectOfClass(std::string_view data)
    {
        return HSVNKeyedUnarchiver{data}.decodeRequiredObject<Class>("root");
    }

    bool allowsKeyedCoding() const override { return true; }
    bool containsValueForKey(std::string_view key) const override;
    std::shared_ptr<HSVNArchivable> decodeAnyObject(std::string_view key) override;
    std::optional<std::string> decodeString(std::string_view key) override;
    std::optional<HSVNDate> decodeDate(std::string_view key) override;
    std::int64_t decodeInteger(std::string_view key) override;
    std::uint64_t decodeUnsigned(std::string_view key) override;
    bool decodeBool(std::string_view key) override;
    HSVNPlatformExceptionRef decodeException(std::string_view key) override;

  protected:
    std::string describeKey(std::string_view key) const override;

  private:
    struct Document;

    std::unique_ptr<Document> _document;
};
