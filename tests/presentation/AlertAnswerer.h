#pragma once

#include "Corvane/presentation/AlertDialog.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QTimer>

#include <deque>

namespace corvane::test {

// Answers the real modal alerts as a person would: each time one comes up, it records what the alert
// says and presses the next scripted answer. Alerts beyond the script are answered with the first
// button and counted, so a test fails instead of hanging.
class AlertAnswerer : public QObject {
public:
    enum class Answer { first, second, escape, close };

    struct Seen {
        QString title;
        QString message;
        QString detail; // empty without a detail view
        QStringList buttons;
    };

    explicit AlertAnswerer(std::deque<Answer> answers = {})
        : m_answers(std::move(answers))
    {
        connect(&m_poll, &QTimer::timeout, this, [this] { answerIfShown(); });
        m_poll.start(10);
    }

    void expect(Answer answer) { m_answers.push_back(answer); }
    const QList<Seen>& seen() const { return m_seen; }
    int unexpected() const { return m_unexpected; }

private:
    void answerIfShown()
    {
        auto alert = qobject_cast<AlertDialog*>(QApplication::activeModalWidget());
        if (!alert || !alert->isVisible() || alert == m_answered)
            return;
        m_answered = alert;
        Seen seen{alert->title(), alert->message(), {}, {}};
        if (auto detail = qobject_cast<QLabel*>(alert->accessoryView()))
            seen.detail = detail->text();
        for (int index = 0; alert->button(index); ++index)
            seen.buttons << alert->button(index)->text();
        m_seen << seen;

        Answer answer = Answer::first;
        if (m_answers.empty())
            ++m_unexpected;
        else {
            answer = m_answers.front();
            m_answers.pop_front();
        }
        switch (answer) {
        case Answer::first:
            alert->button(0)->click();
            break;
        case Answer::second:
            alert->button(1)->click();
            break;
        case Answer::escape: {
            QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
            QApplication::sendEvent(alert, &escape);
            break;
        }
        case Answer::close:
            alert->close();
            break;
        }
    }

    std::deque<Answer> m_answers;
    QList<Seen> m_seen;
    QTimer m_poll;
    QPointer<AlertDialog> m_answered;
    int m_unexpected = 0;
};

} // namespace corvane::test
