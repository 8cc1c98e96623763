#include "SvnDaemon.h"

SvnDaemon::SvnDaemon(const std::string& root)
    : _server{[&](std::uint16_t port) {
          return std::vector<std::string>{"svnserve",      "--daemon",  "--foreground",  "--threads",
                                          "--listen-host", "127.0.0.1", "--listen-port", std::to_string(port),
                                          "--root",        root};
      }},
      _url{"svn://127.0.0.1:" + std::to_string(_server.port())}
{
}
