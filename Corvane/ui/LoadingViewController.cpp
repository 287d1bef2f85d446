// SPDX-License-Identifier: MIT
#include "Corvane/ui/LoadingViewController.h"

#include "Corvane/module/Localized.h"
#include "Corvane/ui/SecondaryText.h"
#include "ui_LoadingView.h"

#include <QEvent>

namespace corvane {

LoadingViewController::LoadingViewController(QWidget* parent)
    : StatusOverlay(parent), m_ui(std::make_unique<Ui::LoadingView>())
{
    m_ui->setupUi(this);
    //% "Checking for theme updates…"
    m_ui->messageLabel->setText(localizedString(QT_TRID_NOOP("corvane.loading.message"), "Checking for theme updates…"));
    setLabelColour(m_ui->messageLabel, secondaryTextColour(palette(), QPalette::Text));
    m_ui->loadingIndicator->setVisible(false);
}

LoadingViewController::~LoadingViewController() = default;

QProgressBar* LoadingViewController::loadingIndicator() const
{
    return m_ui->loadingIndicator;
}

void LoadingViewController::show()
{
    setOpacity(0.0);
    setHidden(false);
    setIndicatorRunning(true);
    fadeTo(1.0, fadeInDuration);
}

void LoadingViewController::hide()
{
    fadeTo(0.0, fadeOutDuration, [this] { setIndicatorRunning(false); });
}

void LoadingViewController::changeEvent(QEvent* event)
{
    StatusOverlay::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        setLabelColour(m_ui->messageLabel, secondaryTextColour(palette(), QPalette::Text));
}

void LoadingViewController::setIndicatorRunning(bool running)
{
    m_indicatorRunning = running;
    // A busy bar (no range) animates; a stopped one need not be drawn at all.
    m_ui->loadingIndicator->setRange(0, running ? 0 : 1);
    m_ui->loadingIndicator->setVisible(running);
}

} // namespace corvane
