#pragma once

#include "LoopbackServer.h"

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
    LoopbackServer _server;
    std::string _url;
};
