// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/cloud/SyncClientSocket.h"

#include "base/PathBytes.h"

#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace cvtamber {

namespace {

std::error_code lastError()
{
    return {errno, std::generic_category()};
}

class Socket
{
public:
    Socket()
        : _number(::socket(AF_UNIX, SOCK_STREAM, 0))
    {
        if (_number < 0)
            return;
        ::fcntl(_number, F_SETFD, FD_CLOEXEC);
        ::fcntl(_number, F_SETFL, O_NONBLOCK);
#ifdef SO_NOSIGPIPE
        const int yes = 1;
        ::setsockopt(_number, SOL_SOCKET, SO_NOSIGPIPE, &yes, sizeof yes);
#endif
    }
    Socket(const Socket &) = delete;
    Socket &operator=(const Socket &) = delete;
    ~Socket()
    {
        if (_number >= 0)
            ::close(_number);
    }
    int number() const
    {
        return _number;
    }

private:
    const int _number;
};

// A line end would begin another request, and U+001E another path.
bool fitsIntoRequest(const QByteArray &path)
{
    return !path.isEmpty() && !path.contains('\n') && !path.contains('\x1e');
}

#ifdef MSG_NOSIGNAL
constexpr int SendFlags = MSG_NOSIGNAL;
#else
constexpr int SendFlags = 0;
#endif

} // namespace

std::error_code askForDownload(const QString &socket, const QString &placeholder)
{
    const QByteArray path = bytesOfPath(placeholder);
    const QByteArray name = bytesOfPath(socket);
    sockaddr_un address = {};
    if (!fitsIntoRequest(path) || name.isEmpty() || size_t(name.size()) >= sizeof address.sun_path)
        return std::make_error_code(std::errc::invalid_argument);
    address.sun_family = AF_UNIX;
    std::memcpy(address.sun_path, name.constData(), static_cast<size_t>(name.size()));

    const Socket connection;
    if (connection.number() < 0)
        return lastError();
    const auto *generic = reinterpret_cast<const sockaddr *>(&address);
    if (::connect(connection.number(), generic, sizeof address) != 0)
        return lastError();
    const QByteArray request = "MAKE_AVAILABLE_LOCALLY:" + path + '\n';
    const ssize_t sent =
        ::send(connection.number(), request.constData(), static_cast<size_t>(request.size()), SendFlags);
    if (sent < 0)
        return lastError();
    // A fresh connection takes far more than a path; half a line asks for nothing.
    return sent == request.size() ? std::error_code() : std::make_error_code(std::errc::no_buffer_space);
}

} // namespace cvtamber
