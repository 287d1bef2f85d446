// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>
#include <QString>

class QLabel;
class QPushButton;
class QVBoxLayout;

namespace corvane {

// An application-modal alert: a bold title, a message, an optional detail view below it and two
// buttons, the first of which is the default. runModal() answers firstButton or secondButton; closing
// the alert any other way (Escape, the window's close button) counts as the second button.
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

private:
    QLabel* m_titleLabel;
    QLabel* m_messageLabel;
    QVBoxLayout* m_textLayout;
    QWidget* m_accessoryView = nullptr;
    QWidget* m_buttonRow;
    QList<QPushButton*> m_buttons;
};

} // namespace corvane
