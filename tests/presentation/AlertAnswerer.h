// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/presentation/AlertDialog.h"

#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QTest>

#include <functional>

namespace corvane::test {

// Answers each real modal alert as it comes up with the next scripted answer (the first button beyond the
// script, so a test never hangs), recording its texts: title, message, detail ("" for none), the buttons.
class AlertAnswerer : public QObject {
public:
    // escapeThenFirst: Escape, then the first button if the alert is still up.
    enum class Answer { first, second, returnKey, escape, close, escapeThenFirst };

    explicit AlertAnswerer(QList<Answer> answers = {}) : m_answers(std::move(answers)) { startTimer(10); }
    const QList<QStringList>& seen() const { return m_seen; }
    std::function<void(AlertDialog*)> onShown; // runs before the answer

private:
    void timerEvent(QTimerEvent*) override // looks for a new alert every 10 ms
    {
        auto alert = qobject_cast<AlertDialog*>(QApplication::activeModalWidget());
        if (!alert || !alert->isVisible() || alert == m_answered)
            return;
        m_answered = alert;
        auto detail = qobject_cast<QLabel*>(alert->accessoryView());
        m_seen << QStringList{alert->title(), alert->message(), detail ? detail->text() : QString()};
        for (int index = 0; alert->button(index); ++index)
            m_seen.last() << alert->button(index)->text();
        if (onShown)
            onShown(alert);
        const Answer answer = m_answers.isEmpty() ? Answer::first : m_answers.takeFirst();
        if (answer == Answer::first || answer == Answer::second)
            alert->button(answer == Answer::first ? 0 : 1)->click();
        else if (answer == Answer::close)
            alert->close();
        else if (answer == Answer::escapeThenFirst) {
            QTest::keyClick(alert, Qt::Key_Escape);
            if (alert->isVisible())
                alert->button(0)->click();
        }
        else
            QTest::keyClick(alert, answer == Answer::escape ? Qt::Key_Escape : Qt::Key_Return);
    }

    QList<Answer> m_answers;
    QList<QStringList> m_seen;
    QPointer<AlertDialog> m_answered;
};

} // namespace corvane::test
