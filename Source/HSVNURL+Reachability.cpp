#include "HSVNURL.h"

#include "HSVNException.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <netdb.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cmath>
#include <limits>
#include <memory>

namespace {

using Clock = std::chrono::steady_clock;

/// Size of an IPv4 socket address, handed over where no length is given.
constexpr socklen_t addressLength = 16;

/// An open socket, closed on every way out; not open when the system refused it.
class Socket
{
  public:
    Socket(int family, int type) : _descriptor{socket(family, type | SOCK_CLOEXEC, 0)} {}
    ~Socket()
    {
        if (isOpen()) {
            close(_descriptor);
        }
    }
    Socket(const Socket&) = delete;
    Socket& operator=(const Socket&) = delete;

    bool isOpen() const { return _descriptor >= 0; }
    int descriptor() const { return _descriptor; }
    void setNonBlocking() const
    {
        const int flags = fcntl(_descriptor, F_GETFL);
        if (flags < 0) {
            throw HSVNGenericException("fcntl(F_GETFL) failed for socket");
        }
        if (fcntl(_descriptor, F_SETFL, flags | O_NONBLOCK) < 0) {
            throw HSVNGenericException("fcntl(F_SETFL) failed for socket");
        }
    }

  private:
    int _descriptor;
};

/// The end of a wait of that many seconds; one that would never end takes ten years.
Clock::time_point endOfWait(double timeout)
{
    constexpr double longest = 10.0 * 365 * 24 * 3600;
    const double seconds = std::isnan(timeout) ? 0 : std::clamp(timeout, 0.0, longest);
    return Clock::now() + std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(seconds));
}

/// What poll takes for the time until then: rounded up, so that a wait does not end early.
int remainingMilliseconds(Clock::time_point end)
{
    const auto remaining = std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now()).count();
    return static_cast<int>(std::clamp<decltype(remaining)>(remaining, 0, std::numeric_limits<int>::max()));
}

/// Waits until the socket is writable or in error, which `select` calls writable too.
///
/// `poll` is used because `select` takes no descriptor above 1,023.
bool becomesWritable(int descriptor, double timeout)
{
    const auto end = endOfWait(timeout);
    pollfd waited{descriptor, POLLOUT, 0};
    for (;;) {
        const int wait = remainingMilliseconds(end);
        const int count = poll(&waited, 1, wait);
        if (count > 0) {
            return (waited.revents & (POLLOUT | POLLERR)) != 0;
        }
        const bool wasInterrupted = count < 0 && errno == EINTR;
        if ((count < 0 && !wasInterrupted) || (count == 0 && wait < std::numeric_limits<int>::max())) {
            return false;
        }
    }
}

struct FreeAddresses
{
    void operator()(addrinfo* addresses) const { freeaddrinfo(addresses); }
};

/// The addresses of a stream service; null when host or service cannot be resolved.
std::unique_ptr<addrinfo, FreeAddresses> resolved(const std::string& host, const std::string& service)
{
    addrinfo hints{};
    hints.ai_family = AF_UNSPEC;
    hints.ai_socktype = SOCK_STREAM;
    addrinfo* addresses = nullptr;
    const int status = getaddrinfo(host.c_str(), service.c_str(), &hints, &addresses);
    return std::unique_ptr<addrinfo, FreeAddresses>{status == 0 ? addresses : nullptr};
}

/// The host as the resolver takes it: an IPv6 address without its brackets.
std::string hostForResolver(const std::string& host)
{
    return host.starts_with('[') && host.ends_with(']') ? host.substr(1, host.size() - 2) : host;
}

} // namespace

void HSVNURL::testConnectivity(double timeout) const
{
    if (!isReachableWithinTimeout(timeout)) {
        throw HSVNCommunicationException(fmt::format("{} is currently unreachable", hostAndScheme()));
    }
}

bool HSVNURL::isReachableWithinTimeout(double timeout) const
{
    const auto scheme = this->scheme();
    if (scheme == "file" || schemeUsesTunnel()) {
        return true;
    }
    const auto host = this->host();
    if (!host) {
        return false;
    }
    const auto port = this->port();
    const auto addresses = resolved(hostForResolver(*host), port ? std::to_string(*port) : scheme);
    for (const auto* address = addresses.get(); address; address = address->ai_next) {
        if (connectToAddress(address->ai_addr, address->ai_addrlen, address->ai_family, address->ai_socktype, timeout))
        {
            return true;
        }
    }
    return false;
}

bool HSVNURL::connectToAddress(const sockaddr* address, int family, int socketType, double timeout)
{
    return connectToAddress(address, addressLength, family, socketType, timeout);
}

bool HSVNURL::connectToAddress(const sockaddr* address, std::uint32_t length, int family, int socketType,
                               double timeout)
{
    HSVNAssertParameter(address != nullptr, "address != NULL");
    const Socket socket{family, socketType};
    if (!socket.isOpen()) {
        return false;
    }
    socket.setNonBlocking();
    if (connect(socket.descriptor(), address, length) == 0) {
        return true;
    }
    return errno == EINPROGRESS && becomesWritable(socket.descriptor(), timeout);
}
