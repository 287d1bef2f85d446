// SPDX-License-Identifier: MIT
#include "Corvane/ui/ElidedLabel.h"

#include <QPainter>
#include <QStyle>
#include <QStyleOption>

namespace corvane {

ElidedLabel::ElidedLabel(QWidget* parent) : QLabel(parent)
{
    setTextFormat(Qt::PlainText);
}

QString ElidedLabel::shownText() const
{
    const QRect area = contentsRect().adjusted(margin(), margin(), -margin(), -margin());
    return fontMetrics().elidedText(text(), Qt::ElideRight, area.width());
}

QSize ElidedLabel::minimumSizeHint() const
{
    // As narrow as an ellipsis: the label gives way to the row's other parts.
    const QSize hint = QLabel::minimumSizeHint();
    return {fontMetrics().horizontalAdvance(QStringLiteral("…")) + 2 * margin(), hint.height()};
}

void ElidedLabel::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    drawFrame(&painter);
    QStyleOption option;
    option.initFrom(this);
    const QRect area = contentsRect().adjusted(margin(), margin(), -margin(), -margin());
    style()->drawItemText(&painter, area, int(QStyle::visualAlignment(layoutDirection(), alignment())),
                          option.palette, isEnabled(), shownText(), foregroundRole());
}

} // namespace corvane
