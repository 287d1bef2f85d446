// SPDX-License-Identifier: MIT
#include "Corvane/sources/HttpResponseReader.h"

#include "Corvane/sources/ReceivesBytes.h"

#include <git2.h>

#include <QList>

#include <algorithm>
#include <cstring>

namespace corvane {
namespace {

// Beyond these a peer is not speaking HTTP to us; a bound keeps a hostile one from filling memory.
constexpr qsizetype longestLine = 16 * 1024;
constexpr qsizetype longestHead = 256 * 1024;
constexpr qsizetype receiveSize = 64 * 1024;
constexpr int mostInterimResponses = 8;

} // namespace

HttpResponseReader::HttpResponseReader(ReceivesBytes& connection, QByteArray peer)
    : m_connection(connection)
    , m_peer(std::move(peer))
{
}

bool HttpResponseReader::failed(const QByteArray& what)
{
    git_error_set_str(GIT_ERROR_NET, (what + " from " + m_peer).constData());
    return false;
}

bool HttpResponseReader::need(qsizetype count)
{
    while (m_pending.size() - m_offset < count) {
        if (m_closed)
            return false;
        if (m_offset > 0) {
            m_pending.remove(0, m_offset);
            m_offset = 0;
        }
        const qsizetype had = m_pending.size();
        m_pending.resize(had + receiveSize);
        const ssize_t received = m_connection.receive(m_pending.data() + had, size_t(receiveSize));
        m_pending.resize(had + std::max<qsizetype>(received, 0));
        if (received < 0)
            return false;
        if (received == 0)
            m_closed = true;
    }
    return true;
}

bool HttpResponseReader::takeLine(QByteArray& line)
{
    qsizetype end;
    while ((end = m_pending.indexOf("\r\n", m_offset)) < 0) {
        if (m_pending.size() - m_offset > longestLine)
            return failed("an over-long line in the response");
        if (!need(m_pending.size() - m_offset + 1))
            return m_closed ? failed("an incomplete response") : false;
    }
    line = m_pending.mid(m_offset, end - m_offset);
    m_offset = end + 2;
    return true;
}

bool HttpResponseReader::readHead()
{
    int interim = 0;
    do {
        if (++interim > mostInterimResponses)
            return failed("one interim response after another");
        QByteArray statusLine;
        if (!takeLine(statusLine))
            return false;
        const QList<QByteArray> parts = statusLine.split(' ');
        bool isNumber = false;
        m_status = parts.size() >= 2 ? parts[1].toInt(&isNumber) : 0;
        if (!statusLine.startsWith("HTTP/1.") || !isNumber || m_status < 100 || m_status > 999)
            return failed("a response that is not HTTP/1.x (\"" + statusLine.left(80) + "\")");
        m_headers.clear();
        QByteArray line;
        while (true) {
            if (!takeLine(line))
                return false;
            if (line.isEmpty())
                break;
            m_headers += "\r\n" + line;
            if (m_headers.size() > longestHead)
                return failed("an over-long response head");
        }
    } while (m_status >= 100 && m_status < 200);

    if (m_status == 204 || m_status == 304) {
        m_framing = Framing::length;
        m_remaining = 0;
    } else if (header("transfer-encoding").toLower().contains("chunked")) {
        m_framing = Framing::chunked;
        m_remaining = 0;
    } else if (const QByteArray length = header("content-length"); !length.isEmpty()) {
        bool isNumber = false;
        m_remaining = length.toLongLong(&isNumber);
        if (!isNumber || m_remaining < 0)
            return failed("an invalid Content-Length \"" + length.left(40) + '"');
        m_framing = Framing::length;
    } else {
        m_framing = Framing::untilClose;
    }
    m_complete = false;
    return true;
}

QByteArray HttpResponseReader::header(const QByteArray& name) const
{
    const QByteArray lowerHeaders = m_headers.toLower();
    const QByteArray key = "\r\n" + name.toLower() + ':';
    const qsizetype at = lowerHeaders.indexOf(key);
    if (at < 0)
        return {};
    const qsizetype start = at + key.size();
    const qsizetype end = m_headers.indexOf("\r\n", start);
    return m_headers.mid(start, end < 0 ? -1 : end - start).trimmed();
}

// What is received of the body, up to limit: -1 when the connection has ended, -2 when receiving failed.
ssize_t HttpResponseReader::takeBody(char* buffer, size_t size, qint64 limit)
{
    if (m_offset == m_pending.size() && !need(1))
        return m_closed ? -1 : -2;
    const qsizetype count = qsizetype(std::min<qint64>({qint64(size), limit, qint64(m_pending.size() - m_offset)}));
    std::memcpy(buffer, m_pending.constData() + m_offset, size_t(count));
    m_offset += count;
    return count;
}

bool HttpResponseReader::startNextChunk()
{
    QByteArray line;
    if (!takeLine(line))
        return false;
    if (const qsizetype extension = line.indexOf(';'); extension >= 0)
        line.truncate(extension);
    bool isNumber = false;
    m_remaining = line.trimmed().toLongLong(&isNumber, 16);
    if (!isNumber || m_remaining < 0)
        return failed("a broken chunk size \"" + line.left(40) + '"');
    if (m_remaining > 0)
        return true;
    // The last chunk: trailers up to an empty line.
    do {
        if (!takeLine(line))
            return false;
    } while (!line.isEmpty());
    m_complete = true;
    return true;
}

ssize_t HttpResponseReader::readBody(char* buffer, size_t size)
{
    if (m_complete || size == 0)
        return 0;
    if (m_framing == Framing::length && m_remaining == 0) {
        m_complete = true;
        return 0;
    }
    if (m_framing == Framing::chunked && m_remaining == 0) {
        if (!startNextChunk())
            return -1;
        if (m_complete)
            return 0;
    }
    const qint64 limit = m_framing == Framing::untilClose ? qint64(size) : m_remaining;
    const ssize_t taken = takeBody(buffer, size, limit);
    if (taken == -1) {
        if (m_framing != Framing::untilClose)
            return failed("a response that ended early"), -1;
        m_complete = true;
        return 0;
    }
    if (taken < 0)
        return -1;
    if (m_framing != Framing::untilClose) {
        m_remaining -= taken;
        // Each chunk's data ends with CR LF of its own.
        if (m_framing == Framing::chunked && m_remaining == 0) {
            if (!need(2))
                return m_closed ? (failed("a response that ended early"), -1) : -1;
            if (m_pending.mid(m_offset, 2) != "\r\n")
                return failed("a chunk that does not end where its size says"), -1;
            m_offset += 2;
        }
    }
    return taken;
}

} // namespace corvane
