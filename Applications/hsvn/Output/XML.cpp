#include "Output/XML.h"

#include "CommandLine/Dates.h"
#include "Output/Output.h"

#include <algorithm>
#include <fmt/format.h>
#include <utf8.h>

namespace {

/// Whether XML has the character: it lacks control characters other than white space and the two that are no text.
bool isLegal(std::uint32_t character)
{
    return character < 0x20 ? character == '\t' || character == '\n' || character == '\r'
                            : character != 0xFFFE && character != 0xFFFF;
}

constexpr std::ptrdiff_t longestSequence = 4;

/// The text with the bytes of whatever XML cannot hold written as ?\NNN.
std::string legalText(std::string_view text)
{
    std::string result;
    for (auto position = text.begin(); position != text.end();) {
        const auto start = position;
        const bool isText =
            utf8::find_invalid(
                start, std::next(start, std::min<std::ptrdiff_t>(longestSequence, text.end() - start))) != start;
        if (isText && isLegal(utf8::unchecked::next(position))) {
            result.append(start, position);
            continue;
        }
        position = isText ? position : start + 1;
        std::for_each(start, position,
                      [&](char byte) { result += fmt::format("?\\{:03}", static_cast<unsigned char>(byte)); });
    }
    return result;
}

std::string escaped(std::string_view text, bool isAttribute)
{
    if (!XML::isSafe(text)) {
        return escaped(legalText(text), isAttribute);
    }
    std::string result;
    for (const char character : text) {
        switch (character) {
        case '&':
            result += "&amp;";
            break;
        case '<':
            result += "&lt;";
            break;
        case '>':
            result += "&gt;";
            break;
        case '\r':
            result += "&#13;";
            break;
        case '"':
            result += isAttribute ? "&quot;" : "\"";
            break;
        case '\'':
            result += isAttribute ? "&apos;" : "'";
            break;
        case '\n':
            result += isAttribute ? "&#10;" : "\n";
            break;
        case '\t':
            result += isAttribute ? "&#9;" : "\t";
            break;
        default:
            result += character;
        }
    }
    return result;
}

} // namespace

void XML::tag(const char* name, const Attributes& attributes, const char* end)
{
    _text.append("<").append(name);
    for (const auto& [attribute, value] : attributes) {
        _text += fmt::format("\n   {}=\"{}\"", attribute, escaped(value, true));
    }
    _text += end;
}

XML& XML::open(const char* name, const Attributes& attributes)
{
    tag(name, attributes, ">\n");
    return *this;
}

XML& XML::close(const char* name)
{
    _text.append("</").append(name).append(">\n");
    return *this;
}

XML& XML::empty(const char* name, const Attributes& attributes)
{
    tag(name, attributes, "/>\n");
    return *this;
}

XML& XML::element(const char* name, std::string_view text, const Attributes& attributes)
{
    tag(name, attributes, ">");
    _text += escaped(text, false);
    return close(name);
}

XML& XML::element(const char* name, const std::optional<std::string>& text)
{
    return text ? element(name, std::string_view{*text}) : *this;
}

XML& XML::property(const char* name, const std::string& propertyName, std::string_view value,
                   const Attributes& attributes)
{
    Attributes all = attributes;
    all.emplace_back("name", propertyName);
    if (isSafe(value)) {
        return element(name, value, all);
    }
    all.emplace_back("encoding", "base64");
    return element(name, std::string_view{base64(value)}, all);
}

void XML::write()
{
    Output::writeBytes(_text);
    _text.clear();
}

void XML::writeHeader(const char* root)
{
    Output::writeBytes(fmt::format("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<{}>\n", root));
}

void XML::writeFooter(const char* root) { Output::writeBytes(fmt::format("</{}>\n", root)); }

void addCommit(XML& xml, HSVNRevisionNumber revision, const std::optional<std::string>& author,
               const std::optional<HSVNDate>& date)
{
    xml.open("commit", {{"revision", std::to_string(revision)}}).element("author", author);
    if (date) {
        xml.element("date", std::string_view{exactDate(*date)});
    }
    xml.close("commit");
}

void addLock(XML& xml, const HSVNLock& lock)
{
    xml.open("lock").element("token", std::string_view{lock.token()}).element("owner", lock.owner());
    xml.element("comment", lock.comment());
    if (const auto date = lock.exactCreationDate()) {
        xml.element("created", std::string_view{exactDate(*date)});
    }
    if (const auto date = lock.exactExpirationDate()) {
        xml.element("expires", std::string_view{exactDate(*date)});
    }
    xml.close("lock");
}

bool XML::isSafe(std::string_view bytes)
{
    if (!utf8::is_valid(bytes)) {
        return false;
    }
    for (auto position = bytes.begin(); position != bytes.end();) {
        if (!isLegal(utf8::unchecked::next(position))) {
            return false;
        }
    }
    return true;
}

std::string XML::base64(std::string_view bytes)
{
    constexpr std::string_view digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    constexpr std::size_t lineLength = 76;
    std::string result;
    std::size_t column = 0;
    for (std::size_t index = 0; index < bytes.size(); index += 3) {
        const auto byteAt = [&](std::size_t offset) {
            return index + offset < bytes.size() ? static_cast<unsigned char>(bytes[index + offset]) : 0U;
        };
        const unsigned group = byteAt(0) << 16U | byteAt(1) << 8U | byteAt(2);
        result += digits[group >> 18U];
        result += digits[group >> 12U & 63U];
        result += index + 1 < bytes.size() ? digits[group >> 6U & 63U] : '=';
        result += index + 2 < bytes.size() ? digits[group & 63U] : '=';
        column += 4;
        if (column == lineLength) {
            result += '\n';
            column = 0;
        }
    }
    return column > 0 ? result + "\n" : result;
}
