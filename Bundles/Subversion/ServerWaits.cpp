#include "StandIns.h"

#ifdef HSVN_STANDS_IN_FRONT

#include <chrono>
#include <new>
#include <poll.h>
#include <utility>

#include <apr_network_io.h>
#include <apr_portable.h>
#include <svn_ra.h>

// A server that is silent, or that never stops to answer, holds neither who waits for it: while a session of svn://
// waits or reads, its client is asked for cancellation as anywhere else.

namespace {

constexpr std::chrono::milliseconds interval{200}; ///< between two questions
constexpr const char* key = "HSVNAdapter::Waiting";

/// Who is asked; of a session, and of its connections.
struct Waiting
{
    svn_cancel_func_t cancel = nullptr;
    void* baton = nullptr;
    std::chrono::steady_clock::time_point asked{};

    /// Zero, or the code of the cancellation.
    apr_status_t ask()
    {
        asked = std::chrono::steady_clock::now();
        svn_error_t* const error = cancel(baton);
        const apr_status_t code = error == nullptr ? APR_SUCCESS : error->apr_err;
        svn_error_clear(error);
        return code;
    }

    bool isDue() const { return std::chrono::steady_clock::now() - asked >= interval; }
};

/// Whose session this thread is opening: connections are made inside.
thread_local Waiting opening; // NOLINT(cppcoreguidelines-avoid-non-const-global-variables)

class Opening
{
  public:
    explicit Opening(const Waiting& waiting) : _outer{std::exchange(opening, waiting)} {}
    ~Opening() { opening = _outer; }
    Opening(const Opening&) = delete;
    Opening& operator=(const Opening&) = delete;

  private:
    Waiting _outer;
};

/// Who waits for the socket, which is one that blocks; null for any other.
Waiting* waitingFor(apr_socket_t* socket)
{
    void* waiting = nullptr;
    apr_socket_data_get(&waiting, key, socket);
    apr_interval_time_t timeout = 0;
    return waiting != nullptr && apr_socket_timeout_get(socket, &timeout) == APR_SUCCESS && timeout < 0
               ? static_cast<Waiting*>(waiting)
               : nullptr;
}

/// Returns when something can be read, or the code of the cancellation.
apr_status_t waitToRead(apr_socket_t* socket, Waiting& waiting)
{
    pollfd place{-1, POLLIN, 0};
    apr_os_sock_get(&place.fd, socket);
    while (true) {
        const bool isReady = poll(&place, 1, static_cast<int>(interval.count())) > 0;
        if (!isReady || waiting.isDue()) {
            if (const apr_status_t code = waiting.ask(); code != APR_SUCCESS) {
                return code;
            }
        }
        if (isReady) {
            return APR_SUCCESS;
        }
    }
}

} // namespace

HSVN_STAND_IN svn_error_t* svn_ra_open5(svn_ra_session_t** session, const char** correctedURL, const char** redirectURL,
                                        const char* url, const char* uuid, const svn_ra_callbacks2_t* callbacks,
                                        void* baton, apr_hash_t* configuration, apr_pool_t* pool)
{
    const Opening scope{{callbacks->cancel_func, baton}};
    return HSVN_BEHIND(svn_ra_open5)(session, correctedURL, redirectURL, url, uuid, callbacks, baton, configuration,
                                     pool);
}

HSVN_STAND_IN apr_status_t apr_socket_connect(apr_socket_t* socket, apr_sockaddr_t* address)
{
    if (opening.cancel != nullptr) {
        auto* const pool = apr_socket_pool_get(socket);
        apr_socket_data_set(socket, new (apr_palloc(pool, sizeof(Waiting))) Waiting{opening}, key, nullptr);
    }
    auto* const waiting = waitingFor(socket);
    if (waiting == nullptr) {
        return HSVN_BEHIND(apr_socket_connect)(socket, address);
    }
    apr_socket_timeout_set(socket, std::chrono::microseconds{interval}.count());
    apr_status_t status = APR_SUCCESS;
    while (APR_STATUS_IS_TIMEUP(status = HSVN_BEHIND(apr_socket_connect)(socket, address))) {
        if (const apr_status_t code = waiting->ask(); code != APR_SUCCESS) {
            status = code;
            break;
        }
    }
    apr_socket_timeout_set(socket, -1);
    return status;
}

HSVN_STAND_IN apr_status_t apr_socket_recv(apr_socket_t* socket, char* bytes, apr_size_t* size)
{
    if (auto* const waiting = waitingFor(socket)) {
        if (const apr_status_t code = waitToRead(socket, *waiting); code != APR_SUCCESS) {
            *size = 0;
            return code;
        }
    }
    return HSVN_BEHIND(apr_socket_recv)(socket, bytes, size);
}

#endif
