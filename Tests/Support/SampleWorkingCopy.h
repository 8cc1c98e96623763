#pragma once

#include "TemporaryFolder.h"

#include <string>

/// A real working copy that a line's own client made, with its repository, unpacked for one test (Samples/README.md).
class SampleWorkingCopy
{
  public:
    /// @param line  "1.4", "1.5", "1.6" or "1.14"
    explicit SampleWorkingCopy(const std::string& line);

    /// The absolute path of the working copy, or of another item of the archive.
    std::string path(const std::string& item = "wc") const { return _folder / (_line + "/" + item); }
    /// The bytes of a file of what the line's own svn told.
    std::string expected(const std::string& file) const { return readFile(path("expected/" + file)); }
    /// Points the working copy and its externals at the repository where it is now.
    void relocate() const;

  private:
    std::string _line;
    TemporaryFolder _folder;
};
