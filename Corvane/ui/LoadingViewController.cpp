// SPDX-License-Identifier: MIT
#include "Corvane/ui/LoadingViewController.h"

#include "Corvane/module/Localized.h"
#include "Corvane/ui/SecondaryText.h"
#include "ui_LoadingView.h"

#include <QEvent>
#include <QLocale>

#include <utility>

namespace corvane {

LoadingViewController::LoadingViewController(QWidget* parent)
    : StatusOverlay(parent), m_ui(std::make_unique<Ui::LoadingView>())
{
    m_ui->setupUi(this);
    showCheckingMessage();
    setLabelColour(m_ui->messageLabel, secondaryTextColour(palette(), QPalette::Text));
    m_ui->loadingIndicator->setVisible(false);
}

LoadingViewController::~LoadingViewController() = default;

QProgressBar* LoadingViewController::loadingIndicator() const
{
    return m_ui->loadingIndicator;
}

void LoadingViewController::showCheckingMessage()
{
    //% "Checking for theme updates…"
    m_ui->messageLabel->setText(localizedString(QT_TRID_NOOP("corvane.loading.message"), "Checking for theme updates…"));
}

QString LoadingViewController::message() const
{
    return m_ui->messageLabel->text();
}

void LoadingViewController::showProgress(qsizetype installed, qsizetype total)
{
    // Counts in the user's locale ("2,000" in English, "2.000" in German), the words agreeing with the total.
    //% "Updating %1 of %2…"
    const QString format = localizedCountedString(QT_TRID_N_NOOP("corvane.loading.install-progress"), double(total),
                                                  "Updating %1 of %2…", "Updating %1 of %2…");
    showDeterminate(installed, total,
                    fillPlaceholders(format, {localizedNumber(double(installed)), localizedNumber(double(total))}));
}

void LoadingViewController::showUndoProgress(qsizetype undone, qsizetype total)
{
    //% "Undoing %1 of %2…"
    const QString format = localizedCountedString(QT_TRID_N_NOOP("corvane.loading.undo-progress"), double(total),
                                                  "Undoing %1 of %2…", "Undoing %1 of %2…");
    showDeterminate(undone, total,
                    fillPlaceholders(format, {localizedNumber(double(undone)), localizedNumber(double(total))}));
}

void LoadingViewController::showSynchronizationProgress(const SynchronizationProgress& progress)
{
    // The clone is up to date: what remains is reading and comparing the themes, of unknown length.
    if (progress.stage == SynchronizationProgress::Stage::checkingOut && progress.isComplete()) {
        m_showingProgress = false;
        showCheckingMessage();
        setIndicatorRunning(true);
        return;
    }
    showDeterminate(progress.done, progress.total, progress.text());
}

void LoadingViewController::showDeterminate(qsizetype done, qsizetype total, const QString& text)
{
    m_showingProgress = true;
    m_indicatorRunning = true;
    m_ui->loadingIndicator->setVisible(true);
    if (isHidden() || targetOpacity() < 1.0) {
        setHidden(false);
        fadeTo(1.0, fadeInDuration);
    }
    m_ui->loadingIndicator->setRange(0, int(total));
    m_ui->loadingIndicator->setValue(int(done));
    m_ui->messageLabel->setText(text);
}

void LoadingViewController::show()
{
    if (std::exchange(m_showingProgress, false))
        showCheckingMessage();
    setOpacity(0.0);
    setHidden(false);
    setIndicatorRunning(true);
    fadeTo(1.0, fadeInDuration);
}

void LoadingViewController::hide()
{
    fadeTo(0.0, fadeOutDuration, [this] {
        setIndicatorRunning(false);
        // Back to the comparison's text while nobody sees it.
        if (std::exchange(m_showingProgress, false))
            showCheckingMessage();
    });
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
