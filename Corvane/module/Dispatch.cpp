// SPDX-License-Identifier: MIT
#include "Corvane/module/Dispatch.h"

#include <QCoreApplication>
#include <QEvent>
#include <QThread>
#include <QThreadPool>

#if defined(__SANITIZE_THREAD__)
#include <sanitizer/tsan_interface.h>
#endif

namespace corvane {
namespace {

// Qt's event queue hands a posted event over under a lock ThreadSanitizer cannot see into. These mark
// the hand-over itself: everything the posting thread did before it comes before everything the main
// thread does with the event.
void handOver([[maybe_unused]] void* event)
{
#if defined(__SANITIZE_THREAD__)
    __tsan_release(event);
#endif
}

void takeOver([[maybe_unused]] void* event)
{
#if defined(__SANITIZE_THREAD__)
    __tsan_acquire(event);
#endif
}

QThreadPool& backgroundPool()
{
    static QThreadPool* pool = [] {
        auto p = new QThreadPool;
        p->setThreadPriority(QThread::LowPriority);
        return p;
    }();
    return *pool;
}

QThreadPool& userInitiatedPool()
{
    static QThreadPool* pool = new QThreadPool;
    return *pool;
}

// Work for the main thread travels in an event of its own. Once posted, only the main thread touches
// it: it runs the work, then destroys the event and with it whatever the work holds. (A queued functor
// slot is shared with the posting thread, which may destroy it after the main thread has used it,
// synchronised only by a reference count inside Qt that ThreadSanitizer cannot see.)
class MainThreadTask final : public QEvent {
public:
    static QEvent::Type eventType()
    {
        static const auto type = QEvent::Type(QEvent::registerEventType());
        return type;
    }
    explicit MainThreadTask(std::function<void()> work) : QEvent(eventType()), m_work(std::move(work)) {}
    void run() { m_work(); }

private:
    std::function<void()> m_work;
};

// Receives the tasks in the main thread; made once, and kept for the life of the process.
class MainThreadTaskRunner final : public QObject {
public:
    bool event(QEvent* event) override
    {
        takeOver(event);
        if (event->type() != MainThreadTask::eventType())
            return QObject::event(event);
        static_cast<MainThreadTask*>(event)->run();
        return true;
    }
};

QObject* mainThreadTaskRunner()
{
    static QObject* runner = [] {
        auto* made = new MainThreadTaskRunner;
        made->moveToThread(QCoreApplication::instance()->thread());
        return made;
    }();
    return runner;
}

} // namespace

void dispatchBackground(std::function<void()> work)
{
    backgroundPool().start(std::move(work));
}

void dispatchUserInitiated(std::function<void()> work)
{
    userInitiatedPool().start(std::move(work));
}

void dispatchMain(std::function<void()> work)
{
    auto* task = new MainThreadTask(std::move(work));
    QObject* runner = mainThreadTaskRunner();
    handOver(task);
    QCoreApplication::postEvent(runner, task);
}

} // namespace corvane
