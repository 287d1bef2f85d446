// SPDX-License-Identifier: MIT
#include "Corvane/ui/OpaqueView.h"

#include <QPaintEvent>
#include <QPainter>

namespace corvane {

OpaqueView::OpaqueView(QWidget* parent)
    : QWidget(parent)
{
    // Every pixel is painted here: Qt need not draw what lies beneath first.
    setAttribute(Qt::WA_OpaquePaintEvent);
}

void OpaqueView::paintEvent(QPaintEvent* event)
{
    QPainter painter(this);
    painter.fillRect(event->rect(), palette().color(QPalette::Base));
}

} // namespace corvane
