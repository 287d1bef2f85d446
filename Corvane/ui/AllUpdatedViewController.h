// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/ui/StatusOverlay.h"

#include <functional>
#include <memory>

namespace Ui {
class AllUpdatedView;
}

namespace corvane {

// The overlay shown when the comparison found nothing to install or update. It lies above the
// loading overlay, so it can fade in over it before that one fades out.
class AllUpdatedViewController : public StatusOverlay {
    Q_OBJECT

public:
    explicit AllUpdatedViewController(QWidget* parent = nullptr);
    ~AllUpdatedViewController() override;

    // Fades in from transparent, then calls completion.
    void show(std::function<void()> completion = {});
    void hide();

protected:
    void changeEvent(QEvent* event) override;

private:
    void applyPalette();

    std::unique_ptr<Ui::AllUpdatedView> m_ui;
};

} // namespace corvane
