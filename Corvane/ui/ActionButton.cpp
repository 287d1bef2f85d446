// SPDX-License-Identifier: MIT
#include "Corvane/ui/ActionButton.h"

#include <QKeyEvent>
#include <QPainter>
#include <QStyleOptionButton>

#include <algorithm>

namespace corvane {
namespace {

constexpr qreal focusRingWidth = 2.0;

} // namespace

ActionButton::ActionButton(QWidget* parent) : QPushButton(parent)
{
    setAutoDefault(false);
}

ActionButton::ActionButton(const QString& text, QWidget* parent) : QPushButton(text, parent)
{
    setAutoDefault(false);
}

int ActionButton::paddedWidth(const QString& text) const
{
    // About an "M" of air at each end of the text, over what the style draws around it.
    QStyleOptionButton option;
    initStyleOption(&option);
    option.text = text;
    const QFontMetrics metrics = fontMetrics();
    const QSize content(metrics.horizontalAdvance(text) + 2 * metrics.height(), metrics.height());
    return style()->sizeFromContents(QStyle::CT_PushButton, &option, content, this).width();
}

int ActionButton::widthForTexts(const QStringList& texts) const
{
    int width = 0;
    for (const QString& text : texts)
        width = std::max(width, paddedWidth(text));
    return width;
}

QSize ActionButton::sizeHint() const
{
    QSize hint = QPushButton::sizeHint();
    hint.setWidth(std::max(hint.width(), paddedWidth(text())));
    return hint;
}

QSize ActionButton::minimumSizeHint() const
{
    return sizeHint();
}

void ActionButton::keyPressEvent(QKeyEvent* event)
{
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (enter && event->modifiers() == Qt::NoModifier) {
        if (!event->isAutoRepeat())
            animateClick();
        event->accept();
        return;
    }
    QPushButton::keyPressEvent(event);
}

void ActionButton::paintEvent(QPaintEvent* event)
{
    QPushButton::paintEvent(event);
    // Only focus that came by the keyboard is shown, as the style does: a click needs no ring.
    QStyleOptionButton option;
    initStyleOption(&option);
    if (!(option.state & QStyle::State_HasFocus) || !(option.state & QStyle::State_KeyboardFocusChange))
        return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QColor ring = palette().color(QPalette::Highlight);
    painter.setPen(QPen(ring, focusRingWidth));
    painter.setBrush(Qt::NoBrush);
    const qreal inset = focusRingWidth / 2 + 0.5;
    painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset), 3.5, 3.5);
}

} // namespace corvane
