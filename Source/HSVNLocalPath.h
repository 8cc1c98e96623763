#pragma once

#include "HSVNExport.h"
#include "HSVNForward.h"
#include "HSVNPath.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

/// A file or folder on the disk: an absolute path without a trailing "/", except for the root "/". The item need not
/// exist. Immutable; may be shared between threads.
class HSVN_EXPORT HSVNLocalPath : public HSVNPath
{
  public:
    /// The shared "/".
    static const HSVNLocalPathRef& fileSystemRoot();
    /// @param string  not empty ("string != nil && [string length] > 0"). A leading "~" or "~user" becomes the home
    ///                directory (of HOME, else of the user database; an unknown user's stays as it is); then one
    ///                trailing "/" is removed, a second one stays
    /// @throws HSVNInvalidArgumentException for a text that is not UTF-8 or has a NUL in it
    explicit HSVNLocalPath(const std::string& string);
    /// The constructor of that signature by another name.
    static HSVNLocalPathRef pathWithString(const std::string& string);
    /// @throws HSVNInvalidArgumentException for a path that is missing or that no path can have as its text
    explicit HSVNLocalPath(HSVNCoder* decoder);
    /// For texts known to be well formed by where they come from.
    HSVNLocalPath(const Trusted& key, std::string path);
    friend HSVNLocalPathRef HSVNLocalPathOfTrustedText(std::string path);

    const std::string& string() const override { return _path; }
    /// The path with the home directory as "~".
    std::string denormalizedString() const override;
    std::optional<std::string> location() const override;
    std::optional<std::string> denormalizedLocation() const override;
    /// "/" for the root.
    std::string lastComponent() const override;
    std::string denormalizedLastComponent() const override { return lastComponent(); }
    /// The component joined with one "/"; neither "~" nor a trailing "/" of it is changed.
    HSVNLocalPathRef pathByAddingComponent(const std::string& component) const;
    /// The same: a local path's names are written as they are.
    HSVNLocalPathRef pathByNormalizingAndAddingComponent(const std::string& component) const
    {
        return pathByAddingComponent(component);
    }
    /// The folder that contains the item; nil for the root "/".
    HSVNLocalPathRef parent() const;
    /// The file URL, whose decoded path is this path.
    ///
    /// @throws HSVNInvalidArgumentException for a path that was made relative
    HSVNURLRef URL() const;
    /// The path itself.
    HSVNLocalPathRef localPath() const { return selfPath(); }
    /// The path itself.
    HSVNLocalPathRef canonicalize() const { return selfPath(); }
    /// The path itself.
    HSVNLocalPathRef stripUser() const { return selfPath(); }
    /// Where a symbolic link leads, every link on the way resolved; any other path answers itself.
    ///
    /// @param wasLink  becomes whether the item is a symbolic link; not null ("wasLink != nil")
    HSVNLocalPathRef resolve(bool* wasLink) const;
    /// The same for callers who need not know whether it was a link.
    HSVNLocalPathRef resolve() const;
    /// A new object with the same text.
    HSVNLocalPathRef copy() const;

    /// As for every path, but the root "/" where there is no other common ancestor.
    ///
    /// @param thePath  not nil ("thePath != nil")
    HSVNPathRef commonAncestorFor(const HSVNPathRef& thePath) const override;
    /// As for every path, but the whole `string` relative to the root "/".
    std::optional<std::string> pathRelativeTo(const HSVNPathRef& base) const override;

    std::string className() const override { return "HSVNLocalPath"; }
    /// Key: "path".
    void encodeWithCoder(HSVNCoder* encoder) const override;

  private:
    HSVNLocalPathRef selfPath() const;
    HSVNPathRef childByAdding(const std::string& component) const override;
    HSVNPathRef childByNormalizingAndAdding(const std::string& component) const override;
    HSVNPathRef parentPath() const override { return parent(); }
    HSVNURLRef itemURL() const override;
    HSVNLocalPathRef itemLocalPath() const override { return selfPath(); }
    HSVNPathRef resolvedPath(bool* wasLink) const override { return resolve(wasLink); }
    HSVNPathRef freshCopy() const override { return copy(); }
    HSVNPathRef pathAtRelative(const std::string& path) const override;
    std::vector<std::size_t> ancestorSizes() const override;
    HSVNPathRef ancestorOfSize(std::size_t size) const override;

    std::string _path;
};

/// For unordered containers: by `hash`.
template <>
struct std::hash<HSVNLocalPath> : std::hash<HSVNPath>
{
};
