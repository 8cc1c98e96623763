#pragma once

#include "TemporaryFolder.h"

#include <string>
#include <string_view>
#include <vector>

/// A real file-system repository in a folder of its own, made and filled with the installed command-line tools, so that
/// the tests do not rely on what they test.
class TestRepository
{
  public:
    /// @param isServed  whether its URLs are those of a svnserve that lets everybody read and write, one for the whole
    ///                  run of the tests; otherwise they are file URLs
    explicit TestRepository(bool isServed = false);

    /// The repository's folder.
    std::string path() const { return _folder / "repository"; }
    /// Its root as a canonical URL without a trailing slash.
    const std::string& url() const { return _url; }
    std::string url(std::string_view item) const { return url() + '/' + std::string{item}; }

    /// Commits a file of these bytes, new or changed, at a path below the root whose folder exists.
    void put(const std::string& item, const std::string& bytes) const;
    /// Commits a new folder.
    void makeFolder(const std::string& item) const;
    /// Runs svnmucc on the root with these actions as one commit.
    void change(const std::vector<std::string>& actions) const;

    /// Checks the root, or an item below it, out with the installed svn into a new folder of that name.
    ///
    /// @return the working copy's absolute path, which lies beside the repository and goes with it
    std::string checkOut(std::string_view name = "wc", const std::string& item = {}) const;
    /// The absolute path of something beside the repository, which goes with it.
    std::string beside(std::string_view name) const { return _folder / name; }

    int youngest() const;
    /// The bytes of a file at the youngest revision.
    std::string contents(const std::string& item) const;
    /// The log message of a revision.
    std::string logMessage(int revision) const;

  private:
    TemporaryFolder _folder;
    std::string _url;
};
