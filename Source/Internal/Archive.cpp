#include "Internal/Archive.h"

#include "HSVNDebug.h"
#include "HSVNPlatformException.h"
#include "Internal/Characters.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <cstdint>
#include <limits>
#include <vector>

using nlohmann::json;

namespace {

[[noreturn]] void failDamaged(std::size_t position)
{
    HSVNFailArchive(fmt::format("Archive is damaged at byte {}", position));
}

void requireDepth(std::size_t depth)
{
    if (depth > HSVNArchiveMaximumDepth) {
        HSVNFailArchive(fmt::format("Archive is nested deeper than {} levels", HSVNArchiveMaximumDepth));
    }
}

/// Builds the content out of a parser's events, and refuses what no archive holds as soon as it is met.
class ContentBuilder : public nlohmann::json_sax<json>
{
  public:
    json content() && { return std::move(_content); }

    bool null() override { return put(nullptr); }
    bool boolean(bool value) override { return put(value); }
    bool number_integer(number_integer_t value) override { return put(value); }
    bool number_unsigned(number_unsigned_t value) override { return put(value); }
    bool number_float(number_float_t value, const string_t&) override { return put(value); }
    bool string(string_t& text) override
    {
        requireText(text);
        return put(std::move(text));
    }
    bool binary(binary_t&) override { HSVNFailArchive("Archive has a byte string, which archives do not use"); }
    bool start_array(std::size_t) override { HSVNFailArchive("Archive has an array, which archives do not use"); }
    bool end_array() override { return true; }
    bool start_object(std::size_t) override
    {
        requireDepth(_open.size() + 1);
        if (_open.empty()) {
            _content = json::object();
            _open.push_back(&_content);
        } else {
            *_slot = json::object();
            _open.push_back(_slot);
        }
        return true;
    }
    bool key(string_t& key) override
    {
        requireText(key);
        const auto [place, isNew] = _open.back()->get_ref<json::object_t&>().emplace(std::move(key), nullptr);
        if (!isNew) {
            HSVNFailArchive(fmt::format("Archive has the key {} twice in one object", HSVNArchiveQuoted(place->first)));
        }
        _slot = &place->second;
        return true;
    }
    bool end_object() override
    {
        _open.pop_back();
        return true;
    }
    bool parse_error(std::size_t position, const std::string&, const json::exception&) override
    {
        failDamaged(position);
    }

  private:
    template <class Value>
    bool put(Value&& value)
    {
        if (_open.empty()) {
            HSVNFailArchive("Archive is not an object");
        }
        *_slot = std::forward<Value>(value);
        return true;
    }
    static void requireText(const std::string& text)
    {
        if (!HSVNIsArchivableText(text)) {
            HSVNFailArchive("Archive has a text that is not UTF-8 or contains NUL");
        }
    }

    json _content;
    std::vector<json*> _open; // std::map keeps its elements in place
    json* _slot = nullptr;    // where the value of the last key goes
};

/// Walks over a CBOR item without recursion, before the recursive parser is let loose on it: that one follows nested
/// pieces of indefinite length without a bound and lets the smallest negative numbers wrap.
class CBORGuard
{
  public:
    explicit CBORGuard(std::string_view data) : _data{data} {}

    void check()
    {
        std::vector<std::uint64_t> itemsLeft{1};
        while (!itemsLeft.empty()) {
            if (itemsLeft.back() == 0) {
                itemsLeft.pop_back();
                continue;
            }
            --itemsLeft.back();
            if (const auto items = checkItem()) {
                itemsLeft.push_back(items);
                requireDepth(itemsLeft.size() - 1);
            }
        }
    }

  private:
    enum MajorType : unsigned
    {
        Unsigned = 0,
        Negative = 1,
        Text = 3,
        Map = 5,
        Simple = 7
    };

    /// Steps over one item's head and text; answers how many items follow inside it.
    std::uint64_t checkItem()
    {
        const std::size_t start = _position;
        const unsigned head = nextByte();
        const std::uint64_t argument = headArgument(head & 0x1fU);
        switch (head >> 5U) {
        case Unsigned:
        case Simple:
            return 0;
        case Negative:
            if (argument > std::uint64_t{std::numeric_limits<std::int64_t>::max()}) {
                HSVNFailArchive(fmt::format("Archive has a number that does not fit 64 bits at byte {}", start));
            }
            return 0;
        case Text:
            requireBytes(argument);
            _position += argument;
            return 0;
        case Map:
            requireBytes(argument); // an entry takes two bytes or more, so the doubling cannot overflow
            return argument * 2;
        default:
            HSVNFailArchive(fmt::format("Archive has a kind of value that archives do not use at byte {}", start));
        }
    }

    std::uint64_t headArgument(unsigned information)
    {
        if (information < 24) {
            return information;
        }
        if (information > 27) { // 31 is an indefinite length, the others are reserved
            failDamaged(_position - 1);
        }
        std::uint64_t argument = 0;
        for (unsigned bytes = 1U << (information - 24); bytes > 0; --bytes) {
            argument = argument << 8U | nextByte();
        }
        return argument;
    }

    unsigned nextByte()
    {
        requireBytes(1);
        return static_cast<unsigned char>(_data[_position++]);
    }

    void requireBytes(std::uint64_t count) const
    {
        if (count > _data.size() - _position) {
            HSVNFailArchive(fmt::format("Archive is cut off at byte {}", _data.size()));
        }
    }

    std::string_view _data;
    std::size_t _position = 0;
};

json::input_format_t recognisedFormat(std::string_view data)
{
    const unsigned first = data.empty() ? 0 : static_cast<unsigned char>(data.front());
    if (first >> 5U == 5) { // a CBOR map; no JSON text begins with such a byte
        return json::input_format_t::cbor;
    }
    if (data.substr(0, data.find_first_not_of(" \t\r\n") + 1).ends_with('{')) {
        return json::input_format_t::json;
    }
    HSVNFailArchive("Data is neither a JSON nor a CBOR archive");
}

} // namespace

bool HSVNIsArchivableText(std::string_view text)
{
    return text.size() <= std::size_t{std::numeric_limits<std::int32_t>::max()} && HSVNText::isWellFormed(text);
}

void HSVNFailArchive(std::string reason) { throw HSVNInvalidArgumentException(std::move(reason)); }

std::string HSVNArchiveQuoted(std::string_view text)
{
    constexpr std::size_t longestQuotation = 60;
    return fmt::format("\"{}\"", *HSVNDebugSubstring(std::string{text}, longestQuotation));
}

json HSVNParseArchive(std::string_view data)
{
    const auto format = recognisedFormat(data);
    if (format == json::input_format_t::cbor) {
        CBORGuard{data}.check();
    }
    ContentBuilder builder;
    json::sax_parse(data, &builder, format);
    return std::move(builder).content();
}
