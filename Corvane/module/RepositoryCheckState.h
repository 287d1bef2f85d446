// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/module/RepositoryCheckHandle.h"

#include <QObject>
#include <QPointer>

namespace corvane {

// What a check's answer and its handle share; touched on the main thread only.
struct RepositoryCheckHandle::State {
    QPointer<const QObject> context;
    bool hasContext = false;
    bool cancelled = false;
    bool answered = false;
};

} // namespace corvane
