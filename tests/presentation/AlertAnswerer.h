// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/ui/AlertDialog.h"

#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QTest>

#include <functional>

namespace corvane::test {

// Answers each real modal alert as it comes up with the next scripted answer (the first button beyond the
// script, so a test never hangs), recording its texts: title, message, detail ("" for none), the buttons.
// Escape and closing the window are tries that leave an alert up: the next answer goes to the same alert.
class AlertAnswerer : public QObject {
public:
    enum class Answer { first, second, returnKey, escape, close };

    explicit AlertAnswerer(QList<Answer> answers = {}) : m_answers(std::move(answers)) { startTimer(10); }
    const QList<QStringList>& seen() const { return m_seen; }
    std::function<void(AlertDialog*)> onShown; // runs before the answer

private:
    void timerEvent(QTimerEvent*) override // looks for a new alert every 10 ms
    {
        auto alert = qobject_cast<AlertDialog*>(QApplication::activeModalWidget());
        if (!alert || !alert->isVisible() || alert == m_answered)
            return;
        if (alert != m_recorded) {
            m_recorded = alert;
            auto detail = qobject_cast<QLabel*>(alert->accessoryView());
            m_seen << QStringList{alert->title(), alert->message(), detail ? detail->text() : QString()};
            for (int index = 0; alert->button(index); ++index)
                m_seen.last() << alert->button(index)->text();
            if (onShown)
                onShown(alert);
        }
        const Answer answer = m_answers.isEmpty() ? Answer::first : m_answers.takeFirst();
        if (answer != Answer::escape && answer != Answer::close)
            m_answered = alert;
        if (answer == Answer::first || answer == Answer::second)
            alert->button(answer == Answer::first ? 0 : 1)->click();
        else if (answer == Answer::close)
            alert->close();
        else
            QTest::keyClick(alert, answer == Answer::escape ? Qt::Key_Escape : Qt::Key_Return);
    }

    QList<Answer> m_answers;
    QList<QStringList> m_seen;
    QPointer<AlertDialog> m_answered;
    QPointer<AlertDialog> m_recorded;
};

} // namespace corvane::test
