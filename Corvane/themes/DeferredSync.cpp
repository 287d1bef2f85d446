// SPDX-License-Identifier: MIT
#include "Corvane/themes/DeferredSync.h"

#include "Corvane/module/Dispatch.h"

#include <condition_variable>
#include <mutex>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace corvane {
namespace {

struct Pending {
    int depth = 0;
    QList<QByteArray> folders;
    QList<dev_t> devices;
};

Pending& pending()
{
    thread_local Pending state;
    return state;
}

// One sync of each file system written to; a folder that went away since needs none.
void syncFileSystems(const QList<QByteArray>& folders)
{
    for (const QByteArray& folder : folders) {
        const int descriptor = ::open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        if (descriptor < 0)
            continue;
        ::syncfs(descriptor);
        ::close(descriptor);
    }
}

// The background syncs: one runs at a time, and folders handed in meanwhile wait for the next.
struct BackgroundSyncs {
    std::mutex mutex;
    std::condition_variable idle;
    QList<QByteArray> waiting;
    bool running = false;

    void add(const QList<QByteArray>& folders)
    {
        std::lock_guard lock(mutex);
        for (const QByteArray& folder : folders) {
            if (!waiting.contains(folder))
                waiting.append(folder);
        }
        if (std::exchange(running, true))
            return;
        dispatchBackground([this] { drain(); });
    }

    void drain()
    {
        std::unique_lock lock(mutex);
        while (!waiting.isEmpty()) {
            const QList<QByteArray> folders = std::exchange(waiting, {});
            lock.unlock();
            syncFileSystems(folders);
            lock.lock();
        }
        running = false;
        idle.notify_all();
    }
};

BackgroundSyncs& backgroundSyncs()
{
    static BackgroundSyncs* syncs = new BackgroundSyncs; // outlives every pool thread
    return *syncs;
}

} // namespace

DeferredSync::DeferredSync(Wait wait) : m_wait(wait)
{
    ++pending().depth;
}

DeferredSync::~DeferredSync()
{
    Pending& state = pending();
    if (--state.depth > 0)
        return;
    const QList<QByteArray> folders = std::exchange(state.folders, {});
    state.devices.clear();
    if (folders.isEmpty())
        return;
    if (m_wait == Wait::inBackground)
        backgroundSyncs().add(folders);
    else
        syncFileSystems(folders);
}

void DeferredSync::waitForBackgroundSyncs()
{
    BackgroundSyncs& syncs = backgroundSyncs();
    std::unique_lock lock(syncs.mutex);
    syncs.idle.wait(lock, [&] { return !syncs.running; });
}

bool DeferredSync::active()
{
    return pending().depth > 0;
}

bool DeferredSync::defer(const QByteArray& folder)
{
    Pending& state = pending();
    if (state.depth == 0)
        return false;
    struct stat status;
    if (::stat(folder.constData(), &status) != 0)
        return true; // nothing there to sync
    if (!state.devices.contains(status.st_dev)) {
        state.devices.append(status.st_dev);
        state.folders.append(folder);
    }
    return true;
}

} // namespace corvane
