// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <sys/types.h>

namespace corvane {

// Where a reader of a network protocol gets its bytes: a connection, or any bytes a fuzzer makes up.
class ReceivesBytes {
public:
    virtual ~ReceivesBytes() = default;

    // The number of bytes received, 0 once the peer has closed the connection, -1 on failure (with
    // libgit2's last error set).
    virtual ssize_t receive(char* buffer, size_t size) = 0;
};

} // namespace corvane
