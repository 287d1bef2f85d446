// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>
#include <QString>

class QCloseEvent;
class QKeyEvent;
class QLabel;
class QPushButton;
class QVBoxLayout;

namespace corvane {

// An application-modal alert: a bold title, a message, an optional detail view below it and two
// buttons, the first of which is the default. It is answered only by its buttons: its title bar has no
// close button and Escape does nothing, so no key or click outside the buttons can choose an answer
// (the copying-failed alert's second answer moves the user's themes to the Trash). runModal() answers
// firstButton or secondButton; an end by any other means, such as the application quitting, counts as
// the second button.
class AlertDialog : public QDialog {
    Q_OBJECT

public:
    static constexpr int firstButton = 1000;
    static constexpr int secondButton = 1001;

    explicit AlertDialog(QWidget* parent = nullptr);

    void setTitle(const QString& title);
    void setMessage(const QString& message);
    // Takes ownership; shown between the message and the buttons.
    void setAccessoryView(QWidget* view);
    // In order: the first added is the default, placed where the eye ends (at the right).
    void addButton(const QString& title);

    int runModal();

    QString title() const;
    QString message() const;
    QWidget* accessoryView() const { return m_accessoryView; }
    // 0 for the first button added, 1 for the second.
    QPushButton* button(int index) const;

    void done(int answer) override;

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    QLabel* m_titleLabel;
    QLabel* m_messageLabel;
    QVBoxLayout* m_textLayout;
    QWidget* m_accessoryView = nullptr;
    QWidget* m_buttonRow;
    QList<QPushButton*> m_buttons;
    bool m_answered = false;
};

} // namespace corvane
