#pragma once

#include "HSVNExport.h"
#include "HSVNForward.h"
#include "HSVNPath.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

class HSVNParsedURL;
struct sockaddr;

/// An item in a repository: a percent-escaped URL of any scheme, svn and svn+ssh included, without a trailing "/".
/// Immutable; may be shared between threads.
///
/// A URL is checked once, when it is made, and keeps its text only; its parts are read from the text when asked for.
class HSVN_EXPORT HSVNURL : public HSVNPath
{
  public:
    /// @param string  not empty ("string != nil && [string length] > 0"). White space around it and one "/" at its end
    ///                are removed; "file:///" and a bare scheme such as "svn://" stay. "?" and "#" are escaped:
    ///                Subversion takes them for letters of the item's name
    /// @throws HSVNInvalidArgumentException "URL does not contain a scheme"; "Failed to parse "...". URL is probably
    ///         malformed." for blanks, non-ASCII letters, broken escapes, a port above 65535 and whatever else RFC 3986
    ///         does not allow
    explicit HSVNURL(const std::string& string);
    /// The constructor of that signature by another name.
    static HSVNURLRef URLWithString(const std::string& string);
    /// The same on a path's `string`; a nil path has none.
    explicit HSVNURL(const HSVNPathRef& path);
    /// The same as a reference.
    static HSVNURLRef URLWithPath(const HSVNPathRef& path);
    /// The URL of an unescaped text: every byte that Subversion escapes is escaped, "%", "?" and "#" included, so that
    /// decoding gives the text again, and so that Subversion reports the same URL for the item.
    ///
    /// @param string  not empty ("string != nil && [string length] > 0")
    static HSVNURLRef URLEncodeString(const std::string& string);
    /// A URL built from its parts.
    ///
    /// @param user  unescaped; nil for none
    /// @param host  an IPv6 address is in brackets; nil for none
    /// @param port  nil for none
    /// @param path  escaped; a missing leading "/" is added; nil is "/"
    static HSVNURLRef URLWithScheme(const std::string& scheme, const std::optional<std::string>& user,
                                    const std::optional<std::string>& host, std::optional<std::int32_t> port,
                                    const std::optional<std::string>& path);
    /// The parts (HSVNParsedURL.h) of a URL whose scheme, whatever it is, was replaced by the word "scheme"; nil for
    /// what is no URL.
    static std::optional<HSVNParsedURL> URLWithSubstitutedSchemeForString(const std::string& string);
    /// The TCP port of the system's services database for a scheme, its case ignored; 0 when there is none.
    static std::int32_t defaultPortForScheme(const std::string& scheme);
    /// @throws HSVNInvalidArgumentException for a text that is missing or no URL
    explicit HSVNURL(HSVNCoder* decoder);
    /// For texts known to be well formed by where they come from.
    HSVNURL(const Trusted& key, std::string url);
    friend HSVNURLRef HSVNURLOfTrustedText(std::string url);

    const std::string& string() const override { return _url; }
    /// The URL with its escapes decoded; those that are no UTF-8 or a NUL stay.
    std::string denormalizedString() const override { return URLDecodedString(); }
    /// The same as `denormalizedString`.
    std::string URLDecodedString() const;
    /// Before "://", as written.
    std::string scheme() const;
    /// nil when there is none, as in file:///x; an IPv6 address keeps its brackets.
    std::optional<std::string> host() const;
    /// The port that is written; nil for none.
    std::optional<std::int32_t> port() const;
    std::optional<std::string> user() const override;
    /// Scheme, user, host and port as written, such as "svn://joe@host:3690": what URLs of one server share. The user
    /// is escaped as in `URLWithScheme`.
    std::string hostAndScheme() const;
    /// The path, escaped anew as in `URLEncodeString`; empty for a bare server.
    std::string relativePath() const;
    /// The path unescaped.
    std::string denormalizedRelativePath() const;
    /// Whether the scheme is "file", in any case.
    bool isFileURL() const;
    /// Whether a tunnel program makes the connection, as for svn+ssh.
    bool schemeUsesTunnel() const;

    /// The parent's text; the URL's own for a bare server.
    std::optional<std::string> location() const override;
    std::optional<std::string> denormalizedLocation() const override;
    /// "/" for a URL without a path.
    std::string lastComponent() const override;
    std::string denormalizedLastComponent() const override;
    /// @param component  escaped; "/" at its ends is removed
    /// @throws HSVNInvalidArgumentException "Valid component required" when only that was in it, or what
    ///         `URLWithString` throws
    HSVNURLRef pathByAddingComponent(const std::string& component) const;
    /// As `pathByAddingComponent` for an unescaped component.
    ///
    /// @throws HSVNInvalidArgumentException for a component that is not UTF-8 or has a NUL in it, too
    HSVNURLRef pathByNormalizingAndAddingComponent(const std::string& component) const;
    /// nil for a bare server and for "file:///".
    HSVNURLRef parent() const;
    /// The URL itself.
    HSVNURLRef URL() const { return selfURL(); }
    /// @throws HSVNInvalidArgumentException "URL is not a file:// URL", or "URL is not a valid file URL" for one whose
    ///         decoded path is no absolute path
    HSVNLocalPathRef localPath() const;
    /// The URL rebuilt without its user and password; itself without a user.
    HSVNURLRef stripUser() const;
    /// The URL rebuilt with another scheme.
    HSVNURLRef URLWithScheme(const std::string& scheme) const;
    /// The same with another user, unescaped; nil for none.
    HSVNURLRef URLWithUser(const std::optional<std::string>& user) const;
    /// The same with another port; nil for none.
    HSVNURLRef URLWithPort(std::optional<std::int32_t> port) const;
    /// One text for the spellings of one server: without a user, the scheme's default port written out. A tunnelled URL
    /// loses its user only; a file URL's "localhost" goes; a URL without a port whose scheme has no default stays.
    HSVNURLRef canonicalize() const;
    /// The URL itself: no URL is a symbolic link.
    ///
    /// @param wasLink  becomes false; not null ("wasLink != nil")
    HSVNURLRef resolve(bool* wasLink) const;
    /// The URL itself.
    HSVNURLRef resolve() const { return selfURL(); }
    /// A new object with the same text.
    HSVNURLRef copy() const;

    std::string className() const override { return "HSVNURL"; }
    /// Key: "string".
    void encodeWithCoder(HSVNCoder* encoder) const override;

    // Reachability

    /// Returns when the server answers in time, even if it refuses the connection.
    ///
    /// @param timeout  in seconds, for each address that the host's name resolves to
    /// @throws HSVNCommunicationException "<hostAndScheme> is currently unreachable"; what `connectToAddress` throws
    void testConnectivity(double timeout) const;
    /// Whether the server answers, even with a refusal; true without a test for file URLs and tunnels, false for a host
    /// or a scheme's service that cannot be resolved.
    ///
    /// @param timeout  in seconds, for each address that the host's name resolves to
    bool isReachableWithinTimeout(double timeout) const;
    /// Whether a connection to an address can be started; blocks up to the time-out, which signals do not shorten.
    ///
    /// @param address     a socket address of which the first 16 bytes are handed to the system: enough for IPv4, while
    ///                    a system that wants a longer IPv6 address refuses it, which answers false
    /// @param family      AF_INET and the like
    /// @param socketType  SOCK_STREAM and the like
    /// @param timeout     in seconds; fractions count, less than 0 counts as 0
    /// @return true as soon as the socket is writable, refused connections included
    /// @throws HSVNGenericException "fcntl(F_GETFL) failed for socket", "fcntl(F_SETFL) failed for socket"
    static bool connectToAddress(const sockaddr* address, int family, int socketType, double timeout);
    /// The same for an address of any length, as IPv6 has.
    ///
    /// @param length  of the address in bytes
    static bool connectToAddress(const sockaddr* address, std::uint32_t length, int family, int socketType,
                                 double timeout);

  private:
    HSVNURLRef selfURL() const;
    HSVNParsedURL parsed() const;
    std::optional<std::string> textOfChild(const std::string& component) const; // nil for the URL itself
    HSVNPathRef childByAdding(const std::string& component) const override { return pathByAddingComponent(component); }
    HSVNPathRef childByNormalizingAndAdding(const std::string& component) const override
    {
        return pathByNormalizingAndAddingComponent(component);
    }
    HSVNPathRef parentPath() const override { return parent(); }
    HSVNURLRef itemURL() const override { return selfURL(); }
    HSVNLocalPathRef itemLocalPath() const override;
    HSVNPathRef canonicalPath() const override { return canonicalize(); }
    HSVNPathRef pathWithoutUser() const override { return stripUser(); }
    HSVNPathRef freshCopy() const override { return copy(); }
    HSVNPathRef pathAtRelative(const std::string& path) const override;
    std::vector<std::size_t> ancestorSizes() const override;
    HSVNPathRef ancestorOfSize(std::size_t size) const override;

    std::string _url;
};

/// For unordered containers: by `hash`.
template <>
struct std::hash<HSVNURL> : std::hash<HSVNPath>
{
};
