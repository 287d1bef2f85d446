// SPDX-License-Identifier: MIT
#include "Corvane/ui/ThemePreviewView.h"

#include <QPainter>
#include <QPainterPath>

namespace corvane {

ThemePreviewView::ThemePreviewView(QWidget* parent) : QWidget(parent)
{
    setFixedSize(previewSize);
    setAttribute(Qt::WA_TransparentForMouseEvents);
}

void ThemePreviewView::setPreview(const QPixmap& pixmap)
{
    if (pixmap.cacheKey() == m_pixmap.cacheKey())
        return;
    m_pixmap = pixmap;
    update();
}

void ThemePreviewView::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath outline;
    outline.addRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 4, 4);
    QColor edge = palette().color(QPalette::Text);
    edge.setAlpha(60);
    if (m_pixmap.isNull()) {
        QColor fill = edge;
        fill.setAlpha(22);
        painter.fillPath(outline, fill);
    } else {
        painter.save();
        painter.setClipPath(outline);
        const QSize shown = m_pixmap.deviceIndependentSize().toSize().scaled(size(), Qt::KeepAspectRatio);
        const QRect target(QPoint((width() - shown.width()) / 2, (height() - shown.height()) / 2), shown);
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.drawPixmap(target, m_pixmap);
        painter.restore();
    }
    painter.setPen(edge);
    painter.drawPath(outline);
}

} // namespace corvane
