// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/corvane_widgets_export.h"
#include "Corvane/module/Configuration.h"

#include <QStringList>
#include <QWidget>

#include <memory>

namespace corvane {

class ProvidesThemePreviews;

// The updater's list and buttons as a widget for a host's own page (a settings dialog, a preferences
// tab): the same rows, Install/Update, Update All, Refresh and Open Theme Folder, overlays and alerts as
// the updater window, laid out wherever the host puts it. The first time it is shown it compares the
// clone with the installed themes; Refresh or refresh() compare again. Main thread only; needs a
// QApplication.
class CORVANE_WIDGETS_EXPORT ThemeUpdatesWidget : public QWidget {
    Q_OBJECT
public:
    explicit ThemeUpdatesWidget(const Configuration& configuration, QWidget* parent = nullptr);
    ~ThemeUpdatesWidget() override;

    // Synchronises the clone and lists the differences again, as the Refresh button does.
    void refresh();
    // Shows each row's preview from the host's provider (none: no previews), as the window does.
    void setPreviewProvider(std::shared_ptr<ProvidesThemePreviews> provider);

signals:
    // After each install that installed or updated anything: the paths of the files written, in order.
    void themesInstalled(const QStringList& files);
    // After the user undid the last install with the notice's Undo: the files moved, in order.
    void installUndone(const QStringList& files);

protected:
    void showEvent(QShowEvent* event) override;

private:
    struct Graph;
    std::unique_ptr<Graph> m_graph;
    bool m_shownBefore = false;
};

} // namespace corvane
