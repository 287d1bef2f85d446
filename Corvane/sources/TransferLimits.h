// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <chrono>

namespace corvane {

// How long a clone or fetch may wait at each stage before it is given up: for the connection to be
// made, for the server's first byte once connected, and for the next sign of progress once the
// transfer runs. A transfer that keeps making progress is never cut short.
struct TransferLimits {
    std::chrono::milliseconds connect = std::chrono::seconds(60);
    std::chrono::milliseconds firstByte = std::chrono::seconds(60);
    std::chrono::milliseconds noProgress = std::chrono::seconds(60);

    static TransferLimits uniform(std::chrono::milliseconds limit) { return {limit, limit, limit}; }
    std::chrono::milliseconds shortest() const { return std::min({connect, firstByte, noProgress}); }
    std::chrono::milliseconds longest() const { return std::max({connect, firstByte, noProgress}); }
};

} // namespace corvane
