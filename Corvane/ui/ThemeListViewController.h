// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/presentation/SkippedVersions.h"
#include "Corvane/presentation/InstallBatchSummary.h"
#include "Corvane/presentation/ThemeEntry.h"
#include "Corvane/presentation/ThemeListViewControllerDelegate.h"
#include "Corvane/sources/SynchronizationProgress.h"
#include "Corvane/ui/ThemeCellView.h"

#include <QElapsedTimer>
#include <QPointer>
#include <QWidget>

#include <functional>
#include <memory>
#include <optional>

class QAbstractButton;
class QCheckBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QSettings;
class QTimer;

namespace Ui {
class ThemeList;
}

namespace corvane {

class AllUpdatedViewController;
class LoadingViewController;
class ProvidesThemePreviews;
class ThemePreviewLoader;
class ThemeTableModel;
class ThemeTableView;
class UndoNotice;

// The content of the updater window: the list of new and updated themes and the buttons Update All,
// Refresh and Open Theme Folder. Turns presses into requests to its delegate, and switches the
// buttons and the two status overlays as the window controller hands it each display state.
class ThemeListViewController : public QWidget, public ThemeCellViewDelegate {
    Q_OBJECT
    Q_INTERFACES(corvane::ThemeCellViewDelegate)

public:
    explicit ThemeListViewController(QWidget* parent = nullptr);
    ~ThemeListViewController() override;

    // Held weakly: requests are dropped once the delegate is gone.
    void setDelegate(std::weak_ptr<ThemeListViewControllerDelegate> delegate) { m_delegate = std::move(delegate); }
    std::shared_ptr<ThemeListViewControllerDelegate> delegate() const { return m_delegate.lock(); }

    // The rows, in display order; replacing them reloads the list.
    ThemeTableModel& tableViewModel() const { return *m_tableViewModel; }

    // Where the skipped versions are kept (the host's settings, which must outlive the list); none
    // means the application's default QSettings.
    void setSettings(QSettings* settings);
    // Skips the row's version, or shows it again, and remembers that in the settings.
    void skipVersion(const ThemeEntry& entry);
    void unskipVersion(const ThemeEntry& entry);

    void updateButtons(const ThemeListState& state);
    void updateStatusViews(const ThemeListState& state);

    // A long install batch: the buttons are disabled, rows take no presses, and the loading overlay
    // counts the copies ("Updating 340 of 2,000…") until the batch ends.
    void showInstallProgress(qsizetype installed, qsizetype total);
    // The same while the last batch is undone ("Undoing 340 of 2,000…").
    void showUndoProgress(qsizetype undone, qsizetype total);
    void showInstallEnded();
    // While the list loads, the loading overlay shows how far the clone's synchronisation got.
    void showSynchronizationProgress(const SynchronizationProgress& progress);

    // With a provider, every row shows its theme's preview, loaded for the rows on screen; none
    // takes the previews away again.
    void setPreviewProvider(std::shared_ptr<ProvidesThemePreviews> provider);
    ThemePreviewLoader* previewLoader() const { return m_previewLoader.get(); }

    // After a batch: the notice above the list that offers to undo it.
    void showUndoNotice(const InstallBatchSummary& summary);

    // Whether a row's button press installs now. Not while the list reloads or a batch runs, and not
    // within a double-click interval after the rows moved: the second click of a quick pair would
    // land on the row that moved under the pointer.
    bool acceptsRowActions() const;

    // The table's question: the view for one of its rows (a configured ThemeCellView), or none.
    QWidget* viewForRow(ThemeTableView& table, int row);

    void installTheme(const CopyCommand& copyCommand) override;

    ThemeTableView* themeTableView() const;
    QPushButton* updateAllButton() const;
    QPushButton* refreshButton() const;
    QPushButton* openThemeDirectoryButton() const;
    LoadingViewController* loadingViewController() const { return m_loadingViewController; }
    AllUpdatedViewController* allUpToDateViewController() const { return m_allUpToDateViewController; }
    UndoNotice* undoNotice() const { return m_undoNotice; }

    // Whether an overlay is still fading.
    bool isAnimating() const;

public slots:
    void updateAll();
    void refresh();
    void openThemeDirectory();

    QLineEdit* findField() const;
    QCheckBox* showSkippedToggle() const;
    QLabel* summaryLabel() const;

protected:
    bool focusNextPrevChild(bool next) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    // Where keyboard focus goes back to once the list settles after a reload.
    enum class FocusPlace { None, Row, Refresh, UpdateAll };

    void rowsReplaced();
    void showUpdateAllTitle();
    void showRowMenu(const ThemeCellView& cell, const QPoint& at);
    void changeSkippedVersions(const std::function<void(SkippedVersions&)>& change);
    void reloadSkippedVersions();
    void showSkippedToggleIfUseful();
    void showSummary();
    void showAllUpToDateIfEverythingSkipped();
    void parkFocusWhileBusy();
    // A batch or an undo runs: the list takes no requests until showInstallEnded().
    void becomeBusyInstalling();
    void restorePlace();
    void setBusy(bool loading, bool installing);
    void loadPreviewsOnScreen();
    void previewArrived(const QString& path);

    std::unique_ptr<Ui::ThemeList> m_ui;
    std::weak_ptr<ThemeListViewControllerDelegate> m_delegate;
    ThemeTableModel* m_tableViewModel;
    LoadingViewController* m_loadingViewController;
    AllUpdatedViewController* m_allUpToDateViewController;
    UndoNotice* m_undoNotice;

    QPointer<QSettings> m_settings;
    // Since the last comparison that succeeded; invalid until one has.
    QElapsedTimer m_checked;
    QTimer* m_summaryClock;
    bool m_reloadingSkips = false;

    bool m_loading = false;
    bool m_installing = false;
    QElapsedTimer m_rowsMoved;
    // The place to come back to: the row acted on (the one that takes its place gets the focus) and
    // the scroll position, so an install does not throw the user back to the top.
    FocusPlace m_focusPlace = FocusPlace::None;
    int m_focusRow = -1;
    std::optional<int> m_scrollPosition;
    std::unique_ptr<ThemePreviewLoader> m_previewLoader;
};

} // namespace corvane
