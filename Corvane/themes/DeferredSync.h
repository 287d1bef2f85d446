// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/corvane_export.h"

#include <QByteArray>
#include <QList>

namespace corvane {

// Makes a run of installs durable together instead of one file at a time. While one lives on this
// thread, the file manager's copies and the Trash leave out their per-file syncs and name the folders
// they wrote to here; when the last one ends, each file system written to is synced once.
//
// A single install syncs the new file before renaming it into place. Inside a scope the renames may
// reach the disk before the data, so a power cut before the scope's sync can leave a theme of it empty,
// with its previous version in the Trash; a batch of 2,000 themes costs a few syncs instead of 5,500.
// A sync of a whole file system can take seconds while other programs write: the window has it run in
// the background (coalesced, one at a time), so no frame waits for the disk; the tool waits for it.
class CORVANE_EXPORT DeferredSync {
public:
    enum class Wait { untilSynced, inBackground };

    explicit DeferredSync(Wait wait = Wait::untilSynced);
    ~DeferredSync();

    DeferredSync(const DeferredSync&) = delete;
    DeferredSync& operator=(const DeferredSync&) = delete;

    // Whether syncs are being deferred on this thread.
    static bool active();
    // Notes a folder whose file system must be synced at the end; false (sync it yourself) when no
    // scope is active.
    static bool defer(const QByteArray& folder);

    // Blocks until the syncs handed to the background so far are done (for a test or a host that quits).
    static void waitForBackgroundSyncs();

private:
    Wait m_wait;
};

} // namespace corvane
