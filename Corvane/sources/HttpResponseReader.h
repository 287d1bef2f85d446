// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <cstddef>
#include <sys/types.h>

namespace corvane {

class ReceivesBytes;

// Reads one HTTP/1.1 response from a peer that may be hostile: the status line and headers, then the
// body as its framing says (a length, chunks, or up to the end of the connection), handing out the
// body's bytes and nothing of the framing. Lines and heads are bounded. Failures leave a network error
// naming the peer as libgit2's last error.
class HttpResponseReader {
public:
    HttpResponseReader(ReceivesBytes& connection, QByteArray peer);

    // Reads up to the end of the headers, passing over interim (1xx) responses.
    bool readHead();

    int status() const { return m_status; }
    // The value of the first header of that name (any case), trimmed; empty when absent.
    QByteArray header(const QByteArray& name) const;

    // Up to size bytes of the body; 0 once it is complete, -1 on failure (the connection ended early,
    // or the framing is broken).
    ssize_t readBody(char* buffer, size_t size);

private:
    enum class Framing { length, chunked, untilClose };

    // Makes at least count bytes available from the current position; false at the end or on failure.
    bool need(qsizetype count);
    // The next line without its CR LF; false when the connection ends first or the line runs too long.
    bool takeLine(QByteArray& line);
    ssize_t takeBody(char* buffer, size_t size, qint64 limit);
    bool startNextChunk();
    bool failed(const QByteArray& what);

    ReceivesBytes& m_connection;
    QByteArray m_peer;
    QByteArray m_pending; // received, not yet consumed from m_offset on
    qsizetype m_offset = 0;
    bool m_closed = false;

    int m_status = 0;
    QByteArray m_headers; // "\r\nname: value" lines, names as received
    Framing m_framing = Framing::untilClose;
    qint64 m_remaining = 0; // of the body (length) or of the current chunk (chunked)
    bool m_complete = false;
};

} // namespace corvane
