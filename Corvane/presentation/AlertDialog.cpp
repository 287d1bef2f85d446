// SPDX-License-Identifier: MIT
#include "Corvane/presentation/AlertDialog.h"

#include <QApplication>
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
    auto button = new QPushButton(title, m_buttonRow);
    const int answer = firstButton + int(m_buttons.size());
    button->setObjectName(QStringLiteral("alertButton%1").arg(m_buttons.size() + 1));
    button->setMinimumWidth(88);
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
    // Escape and the close button reject with 0: they count as the second button.
    QDialog::done(answer == firstButton ? firstButton : secondButton);
}

int AlertDialog::runModal()
{
    if (m_buttons.value(0))
        m_buttons.first()->setFocus();
    const int answer = exec();
    return answer == firstButton ? firstButton : secondButton;
}

} // namespace corvane
