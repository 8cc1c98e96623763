#pragma once

#include "HSVNCoder.h"
#include "HSVNExport.h"
#include "HSVNForward.h"
#include "HSVNTypes.h"

#include <compare>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

/// Where an item is: an HSVNLocalPath on the disk or an HSVNURL in a repository, asked in the same way.
///
/// Every path has two texts, both UTF-8. The normalized one (`string`) is the absolute local path or the
/// percent-escaped URL; equality, hash and order use it alone. The denormalized one is for people: the local path with
/// "~" for the home directory, or the URL with its escapes decoded. A component is one name between two "/".
///
/// Immutable; may be shared between threads. The functions that a subclass must supply fail here with an
/// HSVNInvalidArgumentException that names class and function as an unrecognised operation.
class HSVN_EXPORT HSVNPath : public HSVNArchivable, public std::enable_shared_from_this<HSVNPath>
{
  public:
    HSVNPath& operator=(const HSVNPath&) = delete;

    /// A URL when the text contains "://", else a local path.
    ///
    /// @throws what `HSVNURL::URLWithString` and `HSVNLocalPath::pathWithString` throw
    static HSVNPathRef pathWithString(const std::string& string);
    /// The same for a denormalized text: a URL's text is escaped first, `HSVNURL::URLEncodeString` tells how.
    static HSVNPathRef pathWithDenormalizedString(const std::string& string);
    /// The deepest path that is each of the paths or an ancestor of it, found by `commonAncestorFor` from the first
    /// path on; nil for an empty array, and when there is none.
    static HSVNPathRef commonAncestorForPaths(const std::vector<HSVNPathRef>& paths);

    /// The normalized text.
    virtual const std::string& string() const;
    /// The text for people.
    virtual std::string denormalizedString() const;
    /// No class supplies this: it always fails.
    virtual std::vector<std::string> pathAndFile() const;
    /// Nor this.
    virtual bool isRoot() const;
    /// The text of the folder or URL that contains the item; nil for what lies in nothing.
    virtual std::optional<std::string> location() const;
    /// The same for people; nil for what lies in nothing.
    virtual std::optional<std::string> denormalizedLocation() const;
    /// The last component, as it stands in `string`.
    virtual std::string lastComponent() const;
    /// The last component for people.
    virtual std::string denormalizedLastComponent() const;
    /// A child, by its normalized name: a URL's component is escaped already.
    ///
    /// @param component  not empty ("component != nil && [component length] > 0"); "/" answers the path itself
    HSVNPathRef pathByAddingComponent(const std::string& component) const { return childByAdding(component); }
    /// A child, by its name for people: a URL escapes it.
    HSVNPathRef pathByNormalizingAndAddingComponent(const std::string& component) const
    {
        return childByNormalizingAndAdding(component);
    }
    /// The path that contains this one; nil at the top.
    HSVNPathRef parent() const { return parentPath(); }
    /// The URL of the item; a file URL for a local path.
    HSVNURLRef URL() const { return itemURL(); }
    /// The path on the disk; a URL answers it for file URLs only.
    HSVNLocalPathRef localPath() const { return itemLocalPath(); }

    /// The children of those normalized names, in their order.
    std::vector<HSVNPathRef> pathsForChildrenWithLastComponents(const std::vector<std::string>& lastComponents) const;
    /// The name to show: the last component, with its parent's before it when it is "branches", "tags" or "trunk" and
    /// has a parent, so that proj/trunk is told from other trunks.
    std::string displayName() const;
    /// What follows the last "." of the last component; nil without a ".".
    std::optional<std::string> extension() const;

    /// Whether this path lies below the other, by the letters of `string`, case told apart. /ab is not below /a, and no
    /// path is below itself or, for the "/" is missing, below the root "/".
    bool isDescendentOfPath(const HSVNPathRef& other) const;
    /// Whether this path is the other or lies below it; nil gives false.
    bool isEqualToPathOrDescendentOf(const HSVNPathRef& other) const;
    /// The deepest path that is this path or an ancestor of it, and the other or an ancestor of that; nil when there is
    /// none.
    ///
    /// @param path  not nil ("path != nil")
    virtual HSVNPathRef commonAncestorFor(const HSVNPathRef& path) const;
    /// What follows the base in this path for people, its leading "/" kept: /a/b/c relative to /a is /b/c.
    ///
    /// @param base  not nil ("base != nil")
    /// @return an empty text for an equal path, nil for a path that is not below the base
    virtual std::optional<std::string> pathRelativeTo(const HSVNPathRef& base) const;
    /// The way from the base to this path in the terms of a symbolic link: ./b/c, ../../x, or "." for an equal path.
    ///
    /// @param base  not nil ("base != nil")
    /// @return nil without a common ancestor
    std::optional<std::string> pathWithSymlinksRelativeTo(const HSVNPathRef& base) const;
    /// Where a relative text leads from here: "." and empty parts stay, ".." goes to the parent, any other part is
    /// added as a normalized name.
    ///
    /// @return nil when it leads above the top
    HSVNPathRef pathByAddingRelativePathWithSymlinks(const std::string& path) const { return pathAtRelative(path); }

    /// The form by which the spellings of one server are the same; a local path is its own.
    HSVNPathRef canonicalize() const { return canonicalPath(); }
    /// The path without the name of the user; a local path has none.
    HSVNPathRef stripUser() const { return pathWithoutUser(); }
    /// The user's name in a URL, unescaped, or nil; a local path has none.
    virtual std::optional<std::string> user() const { return std::nullopt; }
    /// Where a symbolic link leads, every link on the way resolved; any other path answers itself.
    ///
    /// @param wasLink  becomes whether the item is a symbolic link; not null ("wasLink != nil")
    HSVNPathRef resolve(bool* wasLink) const { return resolvedPath(wasLink); }
    /// The same for callers who need not know whether it was a link.
    HSVNPathRef resolve() const;

    /// `string` in UTF-8, as Subversion takes it; lives as long as the path.
    const char* cString() const { return string().c_str(); }
    /// `string` in another encoding.
    ///
    /// @param encoding  its IANA name or an alias, such as "ISO-8859-1"
    /// @return nil when the encoding cannot express the text
    /// @throws HSVNInvalidArgumentException for an unknown encoding
    std::optional<std::string> cStringUsingEncoding(const std::string& encoding) const;

    /// `string`.
    std::string description() const override { return string(); }
    /// Equal paths have equal hashes.
    std::size_t hash() const { return std::hash<std::string>{}(string()); }
    /// Equality of `string`; nil gives false.
    bool isEqualToPath(const HSVNPathRef& other) const { return other && string() == other->string(); }
    /// Equality of `string` with a text; nil gives false.
    bool isEqualToString(const std::optional<std::string>& other) const { return other && string() == *other; }
    /// `isEqualToPath`.
    bool isEqual(const HSVNPathRef& other) const { return isEqualToPath(other); }
    /// Equality of `string` with a text.
    bool isEqual(const std::string& other) const { return string() == other; }
    /// No path equals nil.
    bool isEqual(std::nullptr_t) const { return false; }
    /// The order of `string` by code points; every path comes after nil.
    HSVNComparisonResult compare(const HSVNPathRef& other) const;
    /// A new object of the same class.
    HSVNPathRef copy() const { return freshCopy(); }
    /// Tests the coder and writes nothing.
    void encodeWithCoder(HSVNCoder* encoder) const override;

    /// Equality of `string`.
    friend bool operator==(const HSVNPath& a, const HSVNPath& b) { return a.string() == b.string(); }
    /// The order of `string`.
    friend std::strong_ordering operator<=>(const HSVNPath& a, const HSVNPath& b) { return a.string() <=> b.string(); }

  protected:
    /// The key to the constructors that check nothing.
    struct Trusted;

    HSVNPath() = default;
    explicit HSVNPath(HSVNCoder* decoder);
    HSVNPath(const HSVNPath&) = default;

    /// This object as its owners hold it; a copy when nobody does.
    HSVNPathRef self() const;
    /// Throws the exception for a function that a subclass must supply.
    [[noreturn]] void failUnrecognised(const char* operation) const;

  private:
    // What the functions of the same sense answer; subclasses have those with their own class as the result.
    virtual HSVNPathRef childByAdding(const std::string& component) const;
    virtual HSVNPathRef childByNormalizingAndAdding(const std::string& component) const;
    virtual HSVNPathRef parentPath() const;
    virtual HSVNURLRef itemURL() const;
    virtual HSVNLocalPathRef itemLocalPath() const;
    virtual HSVNPathRef canonicalPath() const { return self(); }
    virtual HSVNPathRef pathWithoutUser() const { return self(); }
    virtual HSVNPathRef resolvedPath(bool* wasLink) const;
    virtual HSVNPathRef freshCopy() const = 0;
    virtual HSVNPathRef pathAtRelative(const std::string& path) const;

    /// Where the texts of this path and of its ancestors end in `string`, the deepest first, so that they are compared
    /// without objects for all of them. Empty for a class whose ancestors' texts do not begin its own.
    virtual std::vector<std::size_t> ancestorSizes() const { return {}; }
    /// The one of them whose text has the size.
    virtual HSVNPathRef ancestorOfSize(std::size_t size) const;
    static std::size_t stepsUp(const HSVNPathRef& path, const HSVNPath& ancestor);
};

/// For unordered containers: by `hash`.
template <>
struct std::hash<HSVNPath>
{
    std::size_t operator()(const HSVNPath& path) const noexcept { return path.hash(); }
};
