#include "SvnDaemon.h"

#include <arpa/inet.h>
#include <array>
#include <chrono>
#include <cstdint>
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

    /// A port that nobody listened on a moment ago.
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

SvnDaemon::SvnDaemon(const std::string& root)
{
    // Another program may take the port before the server does: then another one is tried.
    for (int attempt = 0; attempt < 20; ++attempt) {
        if (start(root)) {
            return;
        }
    }
    throw std::runtime_error("svnserve does not start");
}

bool SvnDaemon::start(const std::string& root)
{
    const std::uint16_t port = Socket{}.freePort();
    const std::string portText = std::to_string(port);
    _server = std::make_unique<BackgroundCommand>(std::vector<std::string>{"svnserve", "--daemon", "--foreground",
                                                                           "--threads", "--listen-host", "127.0.0.1",
                                                                           "--listen-port", portText, "--root", root});
    for (int wait = 0; wait < 1000 && _server->isRunning(); ++wait) {
        if (Socket{}.canConnect(port) && _server->isRunning()) {
            _url = "svn://127.0.0.1:" + portText;
            return true;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds{5});
    }
    return false;
}
