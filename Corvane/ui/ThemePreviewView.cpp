// SPDX-License-Identifier: MIT
#include "Corvane/ui/ThemePreviewView.h"

#include <QPainter>

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
    // The loader hands the picture over fitted and rounded: it is drawn as it is, centred.
    if (!m_pixmap.isNull()) {
        const QSize shown = m_pixmap.deviceIndependentSize().toSize();
        painter.drawPixmap((width() - shown.width()) / 2, (height() - shown.height()) / 2, m_pixmap);
    }
    painter.setRenderHint(QPainter::Antialiasing);
    QColor edge = palette().color(QPalette::Text);
    edge.setAlpha(60);
    QColor fill = edge;
    fill.setAlpha(m_pixmap.isNull() ? 22 : 0);
    painter.setPen(edge);
    painter.setBrush(fill);
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 4, 4);
}

} // namespace corvane
