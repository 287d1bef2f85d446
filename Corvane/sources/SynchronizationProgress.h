// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/corvane_export.h"

#include <QString>
#include <QtGlobal>

#include <functional>

namespace corvane {

// How far a synchronisation of the clone has got: objects received (with the bytes so far), deltas
// resolved, then files checked out. Each stage counts done of total; stages only move forward.
struct SynchronizationProgress {
    enum class Stage { receiving, resolving, checkingOut };

    Stage stage = Stage::receiving;
    qsizetype done = 0;
    qsizetype total = 0;
    qint64 bytes = 0; // received so far; only while receiving

    bool isComplete() const { return done >= total; }
    friend bool operator==(const SynchronizationProgress&, const SynchronizationProgress&) = default;

    // One line for the user, numbers in the locale: "Receiving objects: 1,234 of 10,000 (3.4 MB)…".
    CORVANE_EXPORT QString text() const;
};

// Called on the synchronising thread, possibly for every object received: keep it cheap.
using ReportsSynchronizationProgress = std::function<void(const SynchronizationProgress&)>;

} // namespace corvane
