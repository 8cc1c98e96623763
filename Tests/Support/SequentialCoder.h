#pragma once

#include "HSVNCoder.h"

#include <stdexcept>

/// A coder that stores values in sequence, without keys: every archivable class must refuse it before it uses it.
class SequentialCoder : public HSVNCoder
{
  public:
    bool allowsKeyedCoding() const override { return false; }
    bool containsValueForKey(std::string_view) const override { used(); }
    void encodeObject(const HSVNArchivableRef&, std::string_view) override { used(); }
    void encodeString(const std::optional<std::string>&, std::string_view) override { used(); }
    void encodeDate(const std::optional<HSVNDate>&, std::string_view) override { used(); }
    void encodeInteger(std::int64_t, std::string_view) override { used(); }
    void encodeUnsigned(std::uint64_t, std::string_view) override { used(); }
    void encodeBool(bool, std::string_view) override { used(); }
    void encodeException(const HSVNPlatformExceptionRef&, std::string_view) override { used(); }
    std::shared_ptr<HSVNArchivable> decodeAnyObject(std::string_view) override { used(); }
    std::optional<std::string> decodeString(std::string_view) override { used(); }
    std::optional<HSVNDate> decodeDate(std::string_view) override { used(); }
    std::int64_t decodeInteger(std::string_view) override { used(); }
    std::uint64_t decodeUnsigned(std::string_view) override { used(); }
    bool decodeBool(std::string_view) override { used(); }
    HSVNPlatformExceptionRef decodeException(std::string_view) override { used(); }

  private:
    [[noreturn]] static void used() { throw std::logic_error("a keyed value was asked of a sequential coder"); }
};
