// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/module/Dispatch.h"

#include <QCoreApplication>
#include <QThread>
#include <QTimer>

#include <chrono>
#include <functional>
#include <memory>
#include <utility>

namespace corvane {

// One asynchronous call's answer, given by whichever comes first: the work's result or its time
// limit. Both reach it on the main thread only, so the first wins without a lock and the other is
// dropped. A server that accepts a connection and then stays silent keeps git waiting for ever;
// the limit is what still answers the caller.
template <class Answer>
class AnswerOnce {
public:
    explicit AnswerOnce(std::function<void(Answer)> completion) : m_completion(std::move(completion)) {}

    // Main thread only.
    void answer(Answer result)
    {
        if (m_answered)
            return;
        m_answered = true;
        if (m_limit) {
            // The timer's own connection holds this object; deleting it later frees both.
            m_limit->stop();
            m_limit->deleteLater();
            m_limit = nullptr;
        }
        auto completion = std::move(m_completion);
        m_completion = nullptr;
        completion(std::move(result));
    }

    // From any thread: when timeLimit passes without an answer, `late` is the answer. Timers belong
    // to the main thread's event loop, so a call from elsewhere starts the limit there.
    static void limit(const std::shared_ptr<AnswerOnce>& pending, std::chrono::milliseconds timeLimit, Answer late)
    {
        auto start = [pending, timeLimit, late = std::move(late)]() mutable {
            if (pending->m_answered)
                return;
            // Parented to the application so that a timer still pending when it quits is freed with it.
            auto timer = new QTimer(QCoreApplication::instance());
            timer->setSingleShot(true);
            QObject::connect(timer, &QTimer::timeout, timer,
                             [pending, late = std::move(late)]() mutable { pending->answer(std::move(late)); });
            pending->m_limit = timer;
            timer->start(timeLimit);
        };
        if (QCoreApplication::instance() && QThread::currentThread() == QCoreApplication::instance()->thread())
            start();
        else
            dispatchMain(std::move(start));
    }

private:
    std::function<void(Answer)> m_completion;
    QTimer* m_limit = nullptr;
    bool m_answered = false;
};

} // namespace corvane
