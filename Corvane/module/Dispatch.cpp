// SPDX-License-Identifier: MIT
#include "Corvane/module/Dispatch.h"

#include <QCoreApplication>
#include <QMetaObject>
#include <QThreadPool>

namespace corvane {
namespace {

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
    QMetaObject::invokeMethod(QCoreApplication::instance(), std::move(work), Qt::QueuedConnection);
}

} // namespace corvane
