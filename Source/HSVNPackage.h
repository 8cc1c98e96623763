#pragma once

#include "HSVNExport.h"
#include "HSVNUserInfo.h"

#include <memory>
#include <string>

/// Keys of a package's information dictionary.
inline constexpr const char* HSVNInfoVersionKey = "CFBundleVersion";       ///< text: the version
inline constexpr const char* HSVNInfoExecutableKey = "CFBundleExecutable"; ///< text: file name of the code
/// Number: the highest working-copy format that the package's Subversion serves.
inline constexpr const char* HSVNInfoWorkingCopyFormatKey = "HSVNWorkingCopyFormatVersion";

/// A loadable package: a folder with an information record `Info.json` and, if it holds code, a shared object.
///
/// Immutable; loaded code is never unloaded. Any thread may use a package.
class HSVN_EXPORT HSVNPackage
{
  public:
    /// Opens the package in a folder; its code is not loaded.
    ///
    /// @param path  the folder's path; a relative one is resolved now
    /// @throws HSVNException "Failed to load svn bundle at PATH" when there is no such folder; the same followed by
    ///         ": " and the cause when its information record cannot be used; one without a record has an empty
    ///         dictionary
    static std::shared_ptr<const HSVNPackage> packageAtPath(const std::string& path);
    /// Absolute path of the package that holds the library itself, such as "/usr/lib/HSVN".
    ///
    /// @throws HSVNException when the running library's file cannot be found any more
    static const std::string& libraryPath();

    /// Absolute path of the package's folder.
    const std::string& path() const { return _path; }
    /// The information record's texts and whole numbers by key; values of other kinds are left out.
    const HSVNUserInfo& infoDictionary() const { return _infoDictionary; }
    /// The value of a key as text; empty when the key is missing.
    std::string infoText(const char* key) const;
    /// Loads the package's code and finds an exported symbol in it; never null.
    ///
    /// @throws HSVNException "Failed to load the code of the bundle at PATH: CAUSE"
    void* symbol(const char* name) const;
    /// The same, but null for a symbol that the code does not export.
    void* optionalSymbol(const char* name) const;

  private:
    HSVNPackage(std::string path, HSVNUserInfo infoDictionary);

    std::string _path;
    HSVNUserInfo _infoDictionary;
};

using HSVNPackageRef = std::shared_ptr<const HSVNPackage>;
