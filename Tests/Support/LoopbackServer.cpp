#include "LoopbackServer.h"

#include "TemporaryFolder.h"

#include <arpa/inet.h>
#include <array>
#include <chrono>
#include <filesystem>
#include <netinet/in.h>
#include <stdexcept>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

namespace {

/// A loopback socket that closes itself.
class Socket
{
  public:
    Socket() : _descriptor{socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)} {}
    ~Socket() { close(_descriptor); }
    Socket(const Socket&) = delete;
    Socket& operator=(const Socket&) = delete;

    bool canConnect(std::uint16_t port) const
    {
        const sockaddr_in address = loopback(port);
        return connect(_descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
    }

    /// A port that nobody listens on.
    std::uint16_t freePort() const
    {
        sockaddr_in address = loopback(0);
        socklen_t size = sizeof address;
        if (bind(_descriptor, reinterpret_cast<const sockaddr*>(&address), size) != 0 ||
            getsockname(_descriptor, reinterpret_cast<sockaddr*>(&address), &size) != 0)
        {
            throw std::runtime_error("no free port");
        }
        return ntohs(address.sin_port);
    }

  private:
    static sockaddr_in loopback(std::uint16_t port)
    {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_port = htons(port);
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        return address;
    }

    int _descriptor;
};

} // namespace

LoopbackServer::LoopbackServer(const std::function<std::vector<std::string>(std::uint16_t)>& command)
{
    // Another program may take the port before the server does: then another one is tried.
    for (int attempt = 0; attempt < 20; ++attempt) {
        _port = freeLoopbackPort();
        if (start(command(_port))) {
            return;
        }
    }
    throw std::runtime_error(command(_port).front() + " does not start");
}

bool LoopbackServer::start(const std::vector<std::string>& command)
{
    _server = std::make_unique<BackgroundCommand>(command);
    for (int wait = 0; wait < 1000 && _server->isRunning(); ++wait) {
        if (Socket{}.canConnect(_port) && _server->isRunning()) {
            return true;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds{5});
    }
    return false;
}

std::uint16_t freeLoopbackPort() { return Socket{}.freePort(); }

std::string awaitFile(const std::string& path)
{
    for (int attempt = 0; attempt < 600 && !std::filesystem::exists(path); ++attempt) {
        std::this_thread::sleep_for(std::chrono::milliseconds{50});
    }
    return std::filesystem::exists(path) ? readFile(path) : "";
}
