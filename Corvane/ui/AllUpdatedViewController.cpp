// SPDX-License-Identifier: MIT
#include "Corvane/ui/AllUpdatedViewController.h"

#include "Corvane/module/Localized.h"
#include "Corvane/ui/SecondaryText.h"
#include "ui_AllUpdatedView.h"

#include <QEvent>
#include <QPainter>
#include <QPainterPath>

namespace corvane {
namespace {

// A check mark in a ring, in the palette's accent colour, drawn for the screen's pixel density.
QPixmap checkMark(const QColor& colour, qreal devicePixelRatio)
{
    constexpr int size = 40;
    QPixmap pixmap(QSize(size, size) * devicePixelRatio);
    pixmap.setDevicePixelRatio(devicePixelRatio);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(colour, 2.5));
    painter.drawEllipse(QRectF(2, 2, size - 4, size - 4));
    QPainterPath tick;
    tick.moveTo(12, 21);
    tick.lineTo(18, 27);
    tick.lineTo(29, 14);
    painter.setPen(QPen(colour, 3, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPath(tick);
    return pixmap;
}

} // namespace

AllUpdatedViewController::AllUpdatedViewController(QWidget* parent)
    : StatusOverlay(parent), m_ui(std::make_unique<Ui::AllUpdatedView>())
{
    m_ui->setupUi(this);
    //% "All themes are up to date"
    m_ui->titleLabel->setText(localizedString(QT_TRID_NOOP("corvane.all-updated.title"), "All themes are up to date"));
    //% "There are no new themes or updates right now."
    m_ui->messageLabel->setText(localizedString(QT_TRID_NOOP("corvane.all-updated.message"),
                                                "There are no new themes or updates right now."));
    QFont titleFont = m_ui->titleLabel->font();
    titleFont.setPointSizeF(titleFont.pointSizeF() + 2);
    m_ui->titleLabel->setFont(titleFont);
    applyPalette();
}

AllUpdatedViewController::~AllUpdatedViewController() = default;

void AllUpdatedViewController::show(std::function<void()> completion)
{
    setOpacity(0.0);
    setHidden(false);
    // Always above its siblings, the loading overlay included.
    raise();
    fadeTo(1.0, fadeInDuration, std::move(completion));
}

void AllUpdatedViewController::hide()
{
    if (isHidden())
        return;
    fadeTo(0.0, fadeOutDuration);
}

void AllUpdatedViewController::changeEvent(QEvent* event)
{
    StatusOverlay::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        applyPalette();
}

void AllUpdatedViewController::applyPalette()
{
    setLabelColour(m_ui->titleLabel, palette().color(QPalette::Text));
    setLabelColour(m_ui->messageLabel, secondaryTextColour(palette(), QPalette::Text));
    m_ui->symbolLabel->setPixmap(checkMark(legibleAccentColour(palette()), devicePixelRatioF()));
}

} // namespace corvane
