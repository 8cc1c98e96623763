#pragma once

#include "HSVNExport.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// The parts of a URL by RFC 3986. An immutable value.
class HSVN_EXPORT HSVNParsedURL
{
  public:
    /// The parts of a text; nil for a text that is no URL or reference by RFC 3986 or has a port above 65535.
    static std::optional<HSVNParsedURL> parse(std::string text);

    /// The whole text.
    const std::string& string() const { return _text; }
    /// As written; empty when there is none.
    std::string scheme() const { return std::string{part(_scheme)}; }
    /// As written, escaped; nil when there is none. A password is not part of it.
    std::optional<std::string> encodedUser() const { return part(_user); }
    /// Unescaped; escapes that are no UTF-8 or a NUL stay.
    std::optional<std::string> user() const;
    /// As written, escaped; nil when there is none or it is empty. An IPv6 address keeps its brackets.
    std::optional<std::string> encodedHost() const { return part(_host); }
    /// Unescaped in the same way.
    std::optional<std::string> host() const;
    /// nil when there is none.
    std::optional<std::int32_t> port() const { return _port; }
    /// The path as it is written, escaped, until a "?" or "#"; may be empty.
    std::string_view encodedPath() const { return part(_path); }
    /// The path unescaped; escapes that are no UTF-8 or a NUL stay.
    std::string path() const;

  private:
    struct Part
    {
        std::uint32_t offset = 0;
        std::uint32_t size = 0;
    };
    HSVNParsedURL() = default;
    std::string_view part(Part found) const { return std::string_view{_text}.substr(found.offset, found.size); }
    std::optional<std::string> part(const std::optional<Part>& found) const
    {
        return found ? std::optional<std::string>{part(*found)} : std::nullopt;
    }

    std::string _text;
    Part _scheme;
    std::optional<Part> _user;
    std::optional<Part> _host;
    std::optional<std::int32_t> _port;
    Part _path;
};
