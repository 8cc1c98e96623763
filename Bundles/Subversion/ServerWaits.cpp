#include "ExternalCycles.h"
#include "Internal/ScopedValue.h"
#include "StandIns.h"

#ifdef HSVN_STANDS_IN_FRONT

#include "ThreadsOwn.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <climits>
#include <new>
#include <poll.h>
#include <sys/socket.h>

#include <apr_file_io.h>
#include <apr_network_io.h>
#include <apr_portable.h>
#include <apr_thread_proc.h>
#include <svn_ra.h>

// A server that is silent, that never stops to answer or that takes nothing any more holds nobody who waits for it, and
// neither does the program of a tunnel: while a session of svn:// or svn+ssh:// waits, reads or sends, its client is
// asked for cancellation as anywhere else.

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
HSVN_THREADS_OWN Waiting opening; // NOLINT(cppcoreguidelines-avoid-non-const-global-variables)

/// A program that a session of this thread goes through.
struct Tunnel
{
    apr_file_t* in;
    apr_file_t* out;
    Waiting waiting;
    Tunnel* next;
};
HSVN_THREADS_OWN Tunnel* tunnels = nullptr; // NOLINT(cppcoreguidelines-avoid-non-const-global-variables)

apr_status_t leaveTunnel(void* tunnel)
{
    for (auto** place = &tunnels; *place != nullptr; place = &(*place)->next) {
        if (*place == tunnel) {
            *place = (*place)->next;
            break;
        }
    }
    return APR_SUCCESS;
}

/// Who waits for the pipe, which is one to or from a tunnel that blocks; null for any other file.
Waiting* waitingFor(apr_file_t* pipe)
{
    auto* tunnel = tunnels;
    while (tunnel != nullptr && tunnel->in != pipe && tunnel->out != pipe) {
        tunnel = tunnel->next;
    }
    apr_interval_time_t timeout = 0;
    return tunnel != nullptr && apr_file_pipe_timeout_get(pipe, &timeout) == APR_SUCCESS && timeout < 0
               ? &tunnel->waiting
               : nullptr;
}

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

int descriptorOf(apr_socket_t* socket)
{
    apr_os_sock_t descriptor = -1;
    apr_os_sock_get(&descriptor, socket);
    return descriptor;
}

int descriptorOf(apr_file_t* file)
{
    apr_os_file_t descriptor = -1;
    apr_os_file_get(&descriptor, file);
    return descriptor;
}

/// Returns when something can be read or written, as asked for, or the code of the cancellation.
apr_status_t waitFor(short event, int descriptor, Waiting& waiting)
{
    pollfd place{descriptor, event, 0};
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

/// The same of a socket or a file that somebody waits for; any other is ready.
///
/// @param size  what is read or written: nothing, where it ends
template <typename Channel>
apr_status_t waitOn(Channel* channel, short event, apr_size_t& size)
{
    auto* const waiting = waitingFor(channel);
    const apr_status_t code = waiting == nullptr ? APR_SUCCESS : waitFor(event, descriptorOf(channel), *waiting);
    size = code == APR_SUCCESS ? size : 0;
    return code;
}

} // namespace

HSVN_STAND_IN(svn_error_t*, svn_ra_open5)
(svn_ra_session_t** session, const char** correctedURL, const char** redirectURL, const char* url, const char* uuid,
 const svn_ra_callbacks2_t* callbacks, void* baton, apr_hash_t* configuration, apr_pool_t* pool)
{
    SVN_ERR(HSVNAdapter::refuseExternalCycle(url));
    const HSVNScopedValue scope{opening, Waiting{callbacks->cancel_func, baton}};
    return HSVN_BEHIND(svn_ra_open5)(session, correctedURL, redirectURL, url, uuid, callbacks, baton, configuration,
                                     pool);
}

HSVN_STAND_IN(apr_status_t, apr_socket_connect)(apr_socket_t* socket, apr_sockaddr_t* address)
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

HSVN_STAND_IN(apr_status_t, apr_socket_recv)(apr_socket_t* socket, char* bytes, apr_size_t* size)
{
    const apr_status_t code = waitOn(socket, POLLIN, *size);
    return code == APR_SUCCESS ? HSVN_BEHIND(apr_socket_recv)(socket, bytes, size) : code;
}

HSVN_STAND_IN(apr_status_t, apr_socket_send)(apr_socket_t* socket, const char* bytes, apr_size_t* size)
{
    auto* const waiting = waitingFor(socket);
    if (waiting == nullptr) {
        return HSVN_BEHIND(apr_socket_send)(socket, bytes, size);
    }
    const int descriptor = descriptorOf(socket);
    while (true) {
        const auto sent = ::send(descriptor, bytes, *size, MSG_DONTWAIT | MSG_NOSIGNAL);
        apr_status_t code = sent < 0 ? errno : APR_SUCCESS;
        if (APR_STATUS_IS_EAGAIN(code)) {
            code = waitFor(POLLOUT, descriptor, *waiting);
        } else if (sent >= 0) {
            *size = static_cast<apr_size_t>(sent);
            return APR_SUCCESS;
        }
        if (code != APR_SUCCESS && !APR_STATUS_IS_EINTR(code)) {
            *size = 0;
            return code;
        }
    }
}

HSVN_STAND_IN(apr_status_t, apr_proc_create)
(apr_proc_t* process, const char* program, const char* const* arguments, const char* const* environment,
 apr_procattr_t* attributes, apr_pool_t* pool)
{
    const apr_status_t status =
        HSVN_BEHIND(apr_proc_create)(process, program, arguments, environment, attributes, pool);
    if (status == APR_SUCCESS && opening.cancel != nullptr) {
        tunnels = new (apr_palloc(pool, sizeof(Tunnel))) Tunnel{process->in, process->out, opening, tunnels};
        apr_pool_cleanup_register(pool, tunnels, leaveTunnel, apr_pool_cleanup_null);
    }
    return status;
}

// Files without a tunnel are read and written a byte at a time by some, hundreds of thousands of times in a commit.

HSVN_STAND_IN(apr_status_t, apr_file_read)(apr_file_t* file, void* bytes, apr_size_t* size)
{
    if (tunnels == nullptr) [[likely]] {
        return HSVN_BEHIND(apr_file_read)(file, bytes, size);
    }
    const apr_status_t code = waitOn(file, POLLIN, *size);
    return code == APR_SUCCESS ? HSVN_BEHIND(apr_file_read)(file, bytes, size) : code;
}

HSVN_STAND_IN(apr_status_t, apr_file_write)(apr_file_t* file, const void* bytes, apr_size_t* size)
{
    if (tunnels == nullptr) [[likely]] {
        return HSVN_BEHIND(apr_file_write)(file, bytes, size);
    }
    if (waitingFor(file) != nullptr) {
        *size = std::min<apr_size_t>(*size, PIPE_BUF); // what a pipe that has room takes without a wait
    }
    const apr_status_t code = waitOn(file, POLLOUT, *size);
    return code == APR_SUCCESS ? HSVN_BEHIND(apr_file_write)(file, bytes, size) : code;
}

#endif
