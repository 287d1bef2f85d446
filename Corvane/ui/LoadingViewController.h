// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/sources/SynchronizationProgress.h"
#include "Corvane/ui/StatusOverlay.h"

#include <memory>

class QProgressBar;

namespace Ui {
class LoadingView;
}

namespace corvane {

// The overlay shown while a comparison runs: a running indicator and a short line of text.
class LoadingViewController : public StatusOverlay {
    Q_OBJECT

public:
    explicit LoadingViewController(QWidget* parent = nullptr);
    ~LoadingViewController() override;

    // Fades in from transparent and starts the indicator.
    void show();
    // Fades out; the indicator stops when the fade has ended.
    void hide();
    // A long install batch: the indicator counts the copies and the text says how far it got. Fades in
    // first when the overlay is not up; the next show() goes back to the running indicator.
    void showProgress(qsizetype installed, qsizetype total);
    // The same for undoing the last batch.
    void showUndoProgress(qsizetype undone, qsizetype total);
    // The clone's synchronisation while the list loads: the indicator fills for each stage in turn and
    // the text names the stage ("Checking out files: 500 of 10,000…"). Once every file is checked out,
    // back to the running indicator while the themes are compared.
    void showSynchronizationProgress(const SynchronizationProgress& progress);

    QString message() const;

    QProgressBar* loadingIndicator() const;
    bool isIndicatorRunning() const { return m_indicatorRunning; }

protected:
    void changeEvent(QEvent* event) override;

private:
    void setIndicatorRunning(bool running);
    void showCheckingMessage();
    void showDeterminate(qsizetype done, qsizetype total, const QString& text);

    std::unique_ptr<Ui::LoadingView> m_ui;
    bool m_indicatorRunning = false;
    bool m_showingProgress = false;
};

} // namespace corvane
