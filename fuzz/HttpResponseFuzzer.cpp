// SPDX-License-Identifier: MIT
// A proxy or server answering plain http may send anything. Reading its answer never crashes, never
// hands out more body than it was sent, and a body framed by its length comes out at that length or
// fails. The first two bytes choose how the bytes arrive and how much the reader asks for at a time.

#include "Corvane/sources/HttpResponseReader.h"
#include "Corvane/sources/ReceivesBytes.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace {

class Replay final : public corvane::ReceivesBytes {
public:
    Replay(const std::uint8_t* data, std::size_t size, std::size_t piece)
        : m_data(data), m_size(size), m_piece(piece)
    {
    }

    ssize_t receive(char* buffer, size_t size) override
    {
        const std::size_t count = std::min({size, m_piece, m_size - m_at});
        std::memcpy(buffer, m_data + m_at, count);
        m_at += count;
        return ssize_t(count);
    }

private:
    const std::uint8_t* m_data;
    std::size_t m_size;
    std::size_t m_piece;
    std::size_t m_at = 0;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size < 2)
        return 0;
    const std::size_t piece = 1 + data[0] % 64 * 97;
    const std::size_t ask = 1 + data[1] % 32 * 211;
    data += 2;
    size -= 2;

    Replay peer(data, size, piece);
    corvane::HttpResponseReader response(peer, "the fuzzer");
    if (!response.readHead())
        return 0;
    const QByteArray length = response.header("content-length");
    const bool chunked = response.header("transfer-encoding").toLower().contains("chunked");
    char buffer[8192];
    std::size_t body = 0;
    while (true) {
        const ssize_t read = response.readBody(buffer, std::min(ask, sizeof buffer));
        if (read < 0)
            return 0;
        if (read == 0)
            break;
        body += std::size_t(read);
        if (body > size)
            std::abort();
    }
    const int status = response.status();
    if (!chunked && !length.isEmpty() && status != 204 && status != 304 && body != std::size_t(length.toLongLong()))
        std::abort();
    return 0;
}
