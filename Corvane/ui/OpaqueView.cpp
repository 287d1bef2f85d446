// SPDX-License-Identifier: MIT
#include "Corvane/ui/OpaqueView.h"

#include <QPaintEvent>
#include <QPainter>

namespace corvane {

OpaqueView::OpaqueView(QWidget* parent)
    : QWidget(parent)
{
    // Every pixel is painted here, yet the view does not tell Qt so (no WA_OpaquePaintEvent): it lies
    // inside an overlay that fades, and a region Qt takes for opaque is one it stops painting beneath.
    // The list under a fading overlay would then keep stale pixels (rows without their buttons), and
    // the overlay's own fade would reach the screen only where a child happened to repaint.
}

void OpaqueView::paintEvent(QPaintEvent* event)
{
    QPainter painter(this);
    painter.fillRect(event->rect(), palette().color(QPalette::Base));
}

} // namespace corvane
