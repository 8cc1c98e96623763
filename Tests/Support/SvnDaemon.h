#pragma once

#include "Command.h"

#include <memory>
#include <string>

/// A real svnserve on a free loopback port, ended with the object.
class SvnDaemon
{
  public:
    /// @param root  the folder of a repository, or of several
    explicit SvnDaemon(const std::string& root);

    /// The URL of the root, such as "svn://127.0.0.1:40123".
    const std::string& url() const { return _url; }

  private:
    bool start(const std::string& root);

    std::string _url;
    std::unique_ptr<BackgroundCommand> _server;
};
