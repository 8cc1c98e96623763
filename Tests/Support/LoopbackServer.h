#pragma once

#include "Command.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

/// A server program on a free loopback port, ended with the object.
class LoopbackServer
{
  public:
    /// @param command  the program and its arguments for a port; the program stays in the foreground
    /// @throws std::runtime_error when no port of several can be listened on
    explicit LoopbackServer(const std::function<std::vector<std::string>(std::uint16_t port)>& command);

    std::uint16_t port() const { return _port; }

  private:
    bool start(const std::vector<std::string>& command);

    std::uint16_t _port = 0;
    std::unique_ptr<BackgroundCommand> _server;
};

/// A loopback port that nobody listened on a moment ago.
std::uint16_t freeLoopbackPort();

/// The bytes of a file that a server puts there once it listens; empty when it does not within half a minute.
std::string awaitFile(const std::string& path);
