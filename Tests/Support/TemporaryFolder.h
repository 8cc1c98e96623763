#pragma once

#include <filesystem>
#include <string>
#include <string_view>

/// A fresh private folder, removed with everything in it when the object goes.
class TemporaryFolder
{
  public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    /// The folder's absolute path, free of symbolic links.
    const std::filesystem::path& path() const { return _path; }
    /// The absolute path of an item in it.
    std::string operator/(std::string_view name) const { return (_path / name).string(); }

  private:
    std::filesystem::path _path;
};

/// Writes a file of exactly these bytes, with the folders it lies in.
void writeFile(const std::filesystem::path& file, std::string_view bytes);
/// All bytes of a file.
std::string readFile(const std::filesystem::path& file);
