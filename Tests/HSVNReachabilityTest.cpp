#include "HSVNException.h"
#include "HSVNURL.h"
#include "ReasonOf.h"

#include <arpa/inet.h>
#include <array>
#include <atomic>
#include <chrono>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;
using Seconds = std::chrono::duration<double>;

/// An open descriptor, closed with the object.
class Descriptor
{
  public:
    explicit Descriptor(int descriptor) : _descriptor{descriptor} {}
    ~Descriptor() { release(); }
    Descriptor(Descriptor&& other) noexcept : _descriptor{std::exchange(other._descriptor, -1)} {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    Descriptor& operator=(Descriptor&&) = delete;

    void release()
    {
        if (_descriptor >= 0) {
            close(std::exchange(_descriptor, -1));
        }
    }
    operator int() const { return _descriptor; } // NOLINT(google-explicit-constructor)

  private:
    int _descriptor;
};

/// A socket that listens on a free loopback port.
class Listener
{
  public:
    explicit Listener(int backlog = 16) : _socket{socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)}
    {
        _address.sin_family = AF_INET;
        _address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof _address;
        if (bind(_socket, address(), size) != 0 || listen(_socket, backlog) != 0 ||
            getsockname(_socket, reinterpret_cast<sockaddr*>(&_address), &size) != 0)
        {
            throw std::runtime_error(std::strerror(errno));
        }
    }

    const sockaddr* address() const { return reinterpret_cast<const sockaddr*>(&_address); }
    HSVNURLRef url(const std::string& scheme = "svn", const std::string& host = "127.0.0.1") const
    {
        return HSVNURL::URLWithScheme(scheme, std::nullopt, host, ntohs(_address.sin_port), "/r");
    }
    void close() { _socket.release(); }

  private:
    Descriptor _socket;
    sockaddr_in _address{};
};

/// A listener that answers nobody any more: its queue is full.
class SilentListener : public Listener
{
  public:
    SilentListener() : Listener{0}
    {
        for (int attempt = 0; attempt < 64 && connects(); ++attempt) {
        }
    }

  private:
    bool connects()
    {
        Descriptor client{socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0)};
        _clients.push_back(std::move(client));
        (void)connect(_clients.back(), address(), sizeof(sockaddr_in)); // in progress, whatever comes of it
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        sockaddr_in peer{};
        socklen_t size = sizeof peer;
        return getpeername(_clients.back(), reinterpret_cast<sockaddr*>(&peer), &size) == 0;
    }

    std::vector<Descriptor> _clients;
};

double secondsOf(const std::function<void()>& call)
{
    const auto start = Clock::now();
    call();
    return Seconds{Clock::now() - start}.count();
}

int openDescriptors()
{
    int count = 0;
    for (int descriptor = 0; descriptor < 1024; ++descriptor) {
        count += fcntl(descriptor, F_GETFD) >= 0 ? 1 : 0;
    }
    return count;
}

} // namespace

TEST(Reachability, FilesAndTunnelsNeedNoNetwork)
{
    for (const char* text : {"file:///no/such/folder", "svn+ssh://nonexistent.invalid/r", "x+y://127.0.0.1:1/r"}) {
        EXPECT_TRUE(HSVNURL::URLWithString(text)->isReachableWithinTimeout(0)) << text;
        EXPECT_NO_THROW(HSVNURL::URLWithString(text)->testConnectivity(0));
    }
}

TEST(Reachability, AListeningServerIsReachable)
{
    const Listener listener;
    const int before = openDescriptors();
    EXPECT_TRUE(listener.url()->isReachableWithinTimeout(5));
    EXPECT_TRUE(listener.url("nosuch", "localhost")->isReachableWithinTimeout(5)) << "a port needs no service name";
    EXPECT_NO_THROW(listener.url()->testConnectivity(5));
    EXPECT_TRUE(HSVNURL::connectToAddress(listener.address(), AF_INET, SOCK_STREAM, 5));
    EXPECT_EQ(openDescriptors(), before);
}

TEST(Reachability, HostsAndServicesThatDoNotResolveAreUnreachable)
{
    const auto named = HSVNURL::URLWithString("svn://joe@nonexistent.invalid:1/r");
    EXPECT_FALSE(named->isReachableWithinTimeout(1));
    EXPECT_EQ(reasonOf<HSVNCommunicationException>([&] { named->testConnectivity(1); }),
              "svn://joe@nonexistent.invalid:1 is currently unreachable");
    EXPECT_FALSE(HSVNURL::URLWithString("nosuch://127.0.0.1/r")->isReachableWithinTimeout(1));
    EXPECT_FALSE(HSVNURL::URLWithString("svn:///r")->isReachableWithinTimeout(1));
    EXPECT_FALSE(HSVNURL::URLWithString("FILE:///r")->isReachableWithinTimeout(1)) << "the comparison is exact";
}

// The system refuses an IPv6 address of which it gets 16 bytes, so that a server's is handed over with its length.
TEST(Reachability, AddressesAreHandedOverInSixteenBytesOrInTheirOwnLength)
{
    const Descriptor server{socket(AF_INET6, SOCK_STREAM | SOCK_CLOEXEC, 0)};
    sockaddr_in6 address{};
    address.sin6_family = AF_INET6;
    address.sin6_addr = in6addr_loopback;
    socklen_t size = sizeof address;
    if (server < 0 || bind(server, reinterpret_cast<sockaddr*>(&address), size) != 0) {
        GTEST_SKIP() << "this machine has no IPv6";
    }
    ASSERT_EQ(listen(server, 4), 0);
    ASSERT_EQ(getsockname(server, reinterpret_cast<sockaddr*>(&address), &size), 0);
    EXPECT_FALSE(HSVNURL::connectToAddress(reinterpret_cast<sockaddr*>(&address), AF_INET6, SOCK_STREAM, 5));
    const auto port = std::to_string(ntohs(address.sin6_port));
    EXPECT_TRUE(HSVNURL::connectToAddress(reinterpret_cast<sockaddr*>(&address), size, AF_INET6, SOCK_STREAM, 5));
    EXPECT_TRUE(HSVNURL::URLWithString("svn://[::1]:" + port)->isReachableWithinTimeout(5));
}

TEST(Reachability, AnUnusableAddressIsUnreachable)
{
    const Listener listener;
    EXPECT_FALSE(HSVNURL::connectToAddress(listener.address(), -1, SOCK_STREAM, 5));
    EXPECT_FALSE(HSVNURL::connectToAddress(listener.address(), AF_INET6, SOCK_STREAM, 5));
    EXPECT_THROW(HSVNURL::connectToAddress(nullptr, AF_INET, SOCK_STREAM, 5), HSVNAssertionException);
}

// A refused connection makes its socket writable, unless the system refuses it at once.
TEST(Reachability, AClosedPortAnswersAtOnce)
{
    Listener listener;
    listener.close();
    Descriptor probe{socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0)};
    const bool isDeferred = connect(probe, listener.address(), sizeof(sockaddr_in)) != 0 && errno == EINPROGRESS;
    bool isReachable = !isDeferred;
    EXPECT_LT(secondsOf([&] { isReachable = listener.url()->isReachableWithinTimeout(30); }), 10);
    EXPECT_EQ(isReachable, isDeferred);
}

TEST(Reachability, ASilentServerTakesTheTimeOutWithItsFraction)
{
    const SilentListener listener;
    for (const double timeout : {-1.0, 0.0, 0.3, 1.2}) {
        bool isReachable = true;
        const double taken = secondsOf([&] { isReachable = listener.url()->isReachableWithinTimeout(timeout); });
        EXPECT_FALSE(isReachable);
        EXPECT_GE(taken, timeout);
        EXPECT_LT(taken, timeout + 5) << "far beyond the time-out";
    }
}

TEST(Reachability, SignalsDoNotShortenTheWait)
{
    static std::atomic<int> signals;
    struct sigaction action
    {
    };
    struct sigaction former
    {
    };
    action.sa_handler = [](int) { ++signals; }; // without SA_RESTART
    ASSERT_EQ(sigaction(SIGUSR1, &action, &former), 0);
    const SilentListener listener;
    std::atomic<bool> isDone = false;
    std::thread sender{[&isDone, receiver = pthread_self()] {
        while (!isDone) {
            pthread_kill(receiver, SIGUSR1);
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
    }};
    bool isReachable = true;
    EXPECT_GE(secondsOf([&] { isReachable = listener.url()->isReachableWithinTimeout(0.5); }), 0.5);
    isDone = true;
    sender.join();
    sigaction(SIGUSR1, &former, nullptr);
    EXPECT_FALSE(isReachable);
    EXPECT_GT(signals, 3);
}

TEST(Reachability, AProcessWithManyOpenFilesIsServed)
{
    constexpr rlim_t wanted = 1200;
    rlimit former{};
    ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &former), 0);
    if (former.rlim_max != RLIM_INFINITY && former.rlim_max < wanted) {
        GTEST_SKIP() << "this machine allows too few open files";
    }
    const rlimit raised{std::max(former.rlim_cur, wanted), former.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &raised), 0);
    const Listener listener;
    const SilentListener silent;
    {
        std::vector<Descriptor> files;
        while (files.size() < 1100) {
            files.emplace_back(open("/dev/null", O_RDONLY | O_CLOEXEC));
            ASSERT_GE(files.back(), 0);
        }
        EXPECT_TRUE(listener.url()->isReachableWithinTimeout(5));
        EXPECT_FALSE(silent.url()->isReachableWithinTimeout(0.1));
    }
    setrlimit(RLIMIT_NOFILE, &former);
}
