// SPDX-License-Identifier: MIT
#include "Corvane/ui/AlertDialog.h"

#include "Corvane/ui/ActionButton.h"

#include <QApplication>
#include <QCloseEvent>
#include <QKeyEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStyle>
#include <QVBoxLayout>

namespace corvane {

AlertDialog::AlertDialog(QWidget* parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("corvaneAlert"));
    setWindowModality(Qt::ApplicationModal);
    // A title, no close button: the window manager offers no way to answer besides the buttons.
    setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint);
    setSizeGripEnabled(false);

    auto icon = new QLabel(this);
    icon->setObjectName(QStringLiteral("alertIcon"));
    const int iconSize = style()->pixelMetric(QStyle::PM_MessageBoxIconSize, nullptr, this);
    const QIcon appIcon = QApplication::windowIcon();
    const QIcon shown = appIcon.isNull() ? style()->standardIcon(QStyle::SP_MessageBoxWarning, nullptr, this) : appIcon;
    icon->setPixmap(shown.pixmap(iconSize, iconSize));
    icon->setAlignment(Qt::AlignTop | Qt::AlignHCenter);

    m_titleLabel = new QLabel(this);
    m_titleLabel->setObjectName(QStringLiteral("alertTitle"));
    m_titleLabel->setTextFormat(Qt::PlainText);
    m_titleLabel->setWordWrap(true);
    QFont titleFont = m_titleLabel->font();
    titleFont.setBold(true);
    titleFont.setPointSizeF(titleFont.pointSizeF() * 1.1);
    m_titleLabel->setFont(titleFont);

    m_messageLabel = new QLabel(this);
    m_messageLabel->setObjectName(QStringLiteral("alertMessage"));
    m_messageLabel->setTextFormat(Qt::PlainText);
    m_messageLabel->setWordWrap(true);
    m_messageLabel->setTextInteractionFlags(Qt::TextSelectableByMouse);

    m_textLayout = new QVBoxLayout;
    m_textLayout->setSpacing(8);
    m_textLayout->addWidget(m_titleLabel);
    m_textLayout->addWidget(m_messageLabel);

    auto body = new QHBoxLayout;
    body->setSpacing(16);
    body->addWidget(icon, 0, Qt::AlignTop);
    body->addLayout(m_textLayout, 1);

    m_buttonRow = new QWidget(this);
    auto buttons = new QHBoxLayout(m_buttonRow);
    buttons->setContentsMargins(0, 0, 0, 0);
    buttons->addStretch(1);

    auto layout = new QVBoxLayout(this);
    layout->setContentsMargins(20, 20, 20, 16);
    layout->setSpacing(18);
    layout->addLayout(body);
    layout->addWidget(m_buttonRow);
    layout->setSizeConstraint(QLayout::SetFixedSize);

    // Wide enough for a calm two-line message, as desktop alerts are.
    m_messageLabel->setMinimumWidth(320);
    m_messageLabel->setMaximumWidth(360);
    m_titleLabel->setMaximumWidth(360);
}

void AlertDialog::setTitle(const QString& title)
{
    m_titleLabel->setText(title);
    setWindowTitle(title);
}

void AlertDialog::setMessage(const QString& message)
{
    m_messageLabel->setText(message);
}

void AlertDialog::setAccessoryView(QWidget* view)
{
    delete m_accessoryView;
    m_accessoryView = view;
    if (view) {
        view->setParent(this);
        m_textLayout->addWidget(view, 0, Qt::AlignLeft);
    }
}

void AlertDialog::addButton(const QString& title)
{
    auto button = new ActionButton(title, m_buttonRow);
    const int answer = firstButton + int(m_buttons.size());
    button->setObjectName(QStringLiteral("alertButton%1").arg(m_buttons.size() + 1));
    button->setMinimumWidth(88);
    // The default button answers Enter from anywhere in the alert; a focused one answers it itself.
    button->setAutoDefault(true);
    connect(button, &QPushButton::clicked, this, [this, answer] { done(answer); });
    auto buttons = static_cast<QHBoxLayout*>(m_buttonRow->layout());
    // Later buttons stand to the left of the earlier ones; the first is the rightmost.
    buttons->insertWidget(1, button);
    if (m_buttons.isEmpty()) {
        button->setDefault(true);
        button->setFocus();
    }
    m_buttons.append(button);
}

QPushButton* AlertDialog::button(int index) const
{
    return index >= 0 && index < m_buttons.size() ? m_buttons.at(index) : nullptr;
}

QString AlertDialog::title() const
{
    return m_titleLabel->text();
}

QString AlertDialog::message() const
{
    return m_messageLabel->text();
}

void AlertDialog::done(int answer)
{
    // Anything but the first button counts as the second: the application quitting ends the loop too.
    m_answered = true;
    QDialog::done(answer == firstButton ? firstButton : secondButton);
}

void AlertDialog::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape && event->modifiers() == Qt::NoModifier) {
        event->accept();
        return;
    }
    QDialog::keyPressEvent(event);
}

void AlertDialog::closeEvent(QCloseEvent* event)
{
    // A close asked for from outside (a window manager's shortcut or menu) is no answer. Closing
    // as part of an answer, or because the application is quitting, goes ahead.
    if (!m_answered && isVisible() && !QCoreApplication::closingDown()) {
        event->ignore();
        return;
    }
    QDialog::closeEvent(event);
}

int AlertDialog::runModal()
{
    m_answered = false;
    if (m_buttons.value(0))
        m_buttons.first()->setFocus();
    const int answer = exec();
    return answer == firstButton ? firstButton : secondButton;
}

} // namespace corvane
