// SPDX-License-Identifier: MIT
#pragma once

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

    QProgressBar* loadingIndicator() const;
    bool isIndicatorRunning() const { return m_indicatorRunning; }

protected:
    void changeEvent(QEvent* event) override;

private:
    void setIndicatorRunning(bool running);

    std::unique_ptr<Ui::LoadingView> m_ui;
    bool m_indicatorRunning = false;
};

} // namespace corvane
