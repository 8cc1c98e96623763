#include "HSVNCoder.h"

#include <fmt/format.h>

#include <limits>

namespace {

/// @param function  that a subclass would have to supply
[[noreturn]] void failUnsupplied(const char* function)
{
    throw HSVNInvalidArgumentException(fmt::format("The coder does not supply {}", function));
}

} // namespace

HSVNCoder::~HSVNCoder() = default;

void HSVNCoder::encodeObject(const HSVNArchivableRef&, std::string_view) { failUnsupplied("encodeObject"); }
void HSVNCoder::encodeString(const std::optional<std::string>&, std::string_view) { failUnsupplied("encodeString"); }
void HSVNCoder::encodeDate(const std::optional<HSVNDate>&, std::string_view) { failUnsupplied("encodeDate"); }
void HSVNCoder::encodeInteger(std::int64_t, std::string_view) { failUnsupplied("encodeInteger"); }
void HSVNCoder::encodeUnsigned(std::uint64_t, std::string_view) { failUnsupplied("encodeUnsigned"); }
void HSVNCoder::encodeBool(bool, std::string_view) { failUnsupplied("encodeBool"); }
void HSVNCoder::encodeException(const HSVNPlatformExceptionRef&, std::string_view)
{
    failUnsupplied("encodeException");
}

bool HSVNCoder::containsValueForKey(std::string_view) const { failUnsupplied("containsValueForKey"); }
std::shared_ptr<HSVNArchivable> HSVNCoder::decodeAnyObject(std::string_view) { failUnsupplied("decodeAnyObject"); }
std::optional<std::string> HSVNCoder::decodeString(std::string_view) { failUnsupplied("decodeString"); }
std::optional<HSVNDate> HSVNCoder::decodeDate(std::string_view) { failUnsupplied("decodeDate"); }
std::int64_t HSVNCoder::decodeInteger(std::string_view) { failUnsupplied("decodeInteger"); }
std::uint64_t HSVNCoder::decodeUnsigned(std::string_view) { failUnsupplied("decodeUnsigned"); }
bool HSVNCoder::decodeBool(std::string_view) { failUnsupplied("decodeBool"); }
HSVNPlatformExceptionRef HSVNCoder::decodeException(std::string_view) { failUnsupplied("decodeException"); }

std::int32_t HSVNCoder::decodeInt32(std::string_view key)
{
    const std::int64_t number = decodeInteger(key);
    if (number < std::numeric_limits<std::int32_t>::min() || number > std::numeric_limits<std::int32_t>::max()) {
        throw HSVNInvalidArgumentException(
            fmt::format("Value of {} does not fit 32 bits: {}", describeKey(key), number));
    }
    return static_cast<std::int32_t>(number);
}

std::int32_t HSVNCoder::decodeRequiredInt32(std::string_view key)
{
    if (!containsValueForKey(key)) {
        failMissing(key);
    }
    return decodeInt32(key);
}

std::string HSVNCoder::decodeRequiredString(std::string_view key)
{
    auto text = decodeString(key);
    if (!text) {
        failMissing(key);
    }
    return *std::move(text);
}

HSVNDate HSVNCoder::decodeRequiredDate(std::string_view key)
{
    const auto date = decodeDate(key);
    if (!date) {
        failMissing(key);
    }
    return *date;
}

std::string HSVNCoder::describeKey(std::string_view key) const { return fmt::format("\"{}\"", key); }

void HSVNCoder::failClass(std::string_view key, const HSVNArchivable& object) const
{
    throw HSVNInvalidArgumentException(
        fmt::format("Value of {} has an unexpected class: {}", describeKey(key), object.className()));
}

void HSVNCoder::failMissing(std::string_view key) const
{
    throw HSVNInvalidArgumentException(fmt::format("Value of {} is missing", describeKey(key)));
}

void HSVNRequireKeyedArchiver(const HSVNCoder* encoder)
{
    HSVNAssertParameter(encoder != nullptr, "encoder != nil");
    if (!encoder->allowsKeyedCoding()) {
        throw HSVNInvalidArgumentException("Keyed archiver required");
    }
}

HSVNCoder* HSVNRequireKeyedUnarchiver(HSVNCoder* decoder)
{
    HSVNAssertParameter(decoder != nullptr, "decoder != nil");
    if (!decoder->allowsKeyedCoding()) {
        throw HSVNInvalidArgumentException("Keyed unarchiver required");
    }
    return decoder;
}
