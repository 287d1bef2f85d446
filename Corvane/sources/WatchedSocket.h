// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/sources/ReceivesBytes.h"

#include <QByteArray>

#include <cstddef>
#include <sys/types.h>

namespace corvane {

class TransferWatch;

// A TCP connection of our own whose every wait (address lookup aside, connecting, sending, the next
// bytes) ends when the operation's TransferWatch times the transfer out, and whose every byte counts as
// progress for it. Failures leave a network error, naming the host, as libgit2's last error.
class WatchedSocket final : public ReceivesBytes {
public:
    explicit WatchedSocket(TransferWatch& watch);
    ~WatchedSocket() override;

    WatchedSocket(const WatchedSocket&) = delete;
    WatchedSocket& operator=(const WatchedSocket&) = delete;

    // Whether the platform has the sockets this needs.
    static bool isAvailable();

    bool connectTo(const QByteArray& host, const QByteArray& port);
    bool sendAll(const char* data, size_t length);
    bool sendAll(const QByteArray& data) { return sendAll(data.constData(), size_t(data.size())); }
    // The number of bytes received, 0 once the peer has closed the connection, -1 on failure.
    ssize_t receive(char* buffer, size_t size) override;

    static void setNetworkError(const QByteArray& text);

private:
    bool waitFor(short events);
    void setSystemError(const char* what, int error) const;

    TransferWatch& m_watch;
    QByteArray m_host;
    int m_socket = -1;
};

} // namespace corvane
