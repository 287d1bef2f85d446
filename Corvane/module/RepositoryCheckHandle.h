// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/corvane_export.h"

#include <memory>

namespace corvane {

// A repository check a host started and may no longer want answered. Cancelling drops the answer; the
// synchronisation itself runs to its end (the clone is left whole). Copies share the one check.
class CORVANE_EXPORT RepositoryCheckHandle {
public:
    struct State;

    explicit RepositoryCheckHandle(std::shared_ptr<State> state);

    // From now on the answer is dropped. Main thread only.
    void cancel();
    // Cancelled, or its context object was destroyed before the answer came.
    bool isCancelled() const;
    // The answer was delivered.
    bool isAnswered() const;

private:
    std::shared_ptr<State> m_state;
};

} // namespace corvane
