#pragma once

#include <string>
#include <string_view>

/// A file in the folder for such files that its owner alone may read, removed with the object.
class HSVNTemporaryFile
{
  public:
    /// Makes an empty one.
    ///
    /// @throws HSVNException "Cannot make a temporary file in '%@': %@"
    HSVNTemporaryFile();
    ~HSVNTemporaryFile();
    HSVNTemporaryFile(HSVNTemporaryFile&& other) noexcept;
    HSVNTemporaryFile& operator=(HSVNTemporaryFile&&) = delete;

    const std::string& path() const { return _path; }
    /// Adds bytes at the end.
    ///
    /// @throws HSVNException "Cannot write '%@': %@"
    void write(std::string_view bytes);
    /// To be called when everything is written: the object then keeps no file open.
    void close();

  private:
    std::string _path;
    int _descriptor = -1;
};
