// SPDX-License-Identifier: MIT
#include "Corvane/ui/ThemeListViewController.h"

#include "Corvane/module/Localized.h"
#include "Corvane/presentation/ListSummary.h"
#include "Corvane/ui/AllUpdatedViewController.h"
#include "Corvane/ui/LoadingViewController.h"
#include "Corvane/ui/SecondaryText.h"
#include "Corvane/ui/ThemeSectionHeaderView.h"
#include "Corvane/ui/ThemeTableModel.h"
#include "Corvane/ui/ThemePreviewLoader.h"
#include "Corvane/ui/ThemePreviewView.h"
#include "Corvane/ui/ThemeTableView.h"
#include "Corvane/ui/UndoNotice.h"
#include "ui_ThemeList.h"

#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QKeyEvent>
#include <QLabel>
#include <QLocale>
#include <QLineEdit>
#include <QMenu>
#include <QShortcut>
#include <QUrl>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QSettings>
#include <QTimer>

namespace corvane {

static_assert(ThemeTableModel::HeaderRole == ThemeTableView::HeaderRole);

ThemeListViewController::ThemeListViewController(QWidget* parent)
    : QWidget(parent)
    , m_ui(std::make_unique<Ui::ThemeList>())
    , m_tableViewModel(new ThemeTableModel(this))
    , m_loadingViewController(new LoadingViewController)
    , m_allUpToDateViewController(new AllUpdatedViewController)
    , m_undoNotice(new UndoNotice)
    , m_summaryClock(new QTimer(this))
{
    m_ui->setupUi(this);
    // In the button bar's free middle, so that its coming and going never moves the rows under the
    // pointer: the press that made the batch may well be followed by another.
    m_ui->buttonLayout->insertWidget(1, m_undoNotice, 1);
    connect(m_undoNotice, &UndoNotice::undoRequested, this, [this] {
        if (const auto delegate = m_delegate.lock())
            delegate->undoLastInstall();
    });
    showUpdateAllTitle();
    //% "Refresh"
    m_ui->refreshButton->setText(localizedString(QT_TRID_NOOP("corvane.list.refresh"), "Refresh"));
    //% "Open Theme Folder"
    m_ui->openThemeDirectoryButton->setText(
        localizedString(QT_TRID_NOOP("corvane.list.open-theme-directory"), "Open Theme Folder"));
    //% "Theme updates"
    m_ui->themeTableView->setAccessibleName(localizedString(QT_TRID_NOOP("corvane.list.accessible-name"), "Theme updates"));
    QPalette separatorPalette = m_ui->separator->palette();
    QColor separatorColour = separatorPalette.color(QPalette::WindowText);
    separatorColour.setAlphaF(0.18);
    separatorPalette.setColor(QPalette::WindowText, separatorColour);
    m_ui->separator->setPalette(separatorPalette);

    connect(m_ui->updateAllButton, &QPushButton::clicked, this, &ThemeListViewController::updateAll);
    connect(m_ui->refreshButton, &QPushButton::clicked, this, &ThemeListViewController::refresh);
    connect(m_ui->openThemeDirectoryButton, &QPushButton::clicked, this, &ThemeListViewController::openThemeDirectory);

    // Nothing to update and nothing loaded yet: the buttons wait for the first state.
    m_ui->updateAllButton->setEnabled(false);

    //% "Show Skipped"
    m_ui->showSkippedToggle->setText(localizedString(QT_TRID_NOOP("corvane.list.show-skipped"), "Show Skipped"));
    m_ui->showSkippedToggle->hide();
    connect(m_ui->showSkippedToggle, &QCheckBox::toggled, this, [this](bool shows) {
        m_tableViewModel->setShowsSkipped(shows);
        showAllUpToDateIfEverythingSkipped();
    });
    m_ui->summaryLabel->setContentsMargins(14, 0, 14, 6);
    m_ui->summaryLabel->setFont(secondaryFont(m_ui->summaryLabel->font()));
    setLabelColour(m_ui->summaryLabel, secondaryTextColour(palette()));
    m_ui->summaryLabel->hide();
    // "checked 2 minutes ago" keeps up with the clock while the window is open.
    m_summaryClock->setInterval(std::chrono::seconds(20));
    connect(m_summaryClock, &QTimer::timeout, this, &ThemeListViewController::showSummary);

    //% "Find by name or author"
    m_ui->findField->setPlaceholderText(localizedString(QT_TRID_NOOP("corvane.list.find"), "Find by name or author"));
    m_ui->findField->setAccessibleName(m_ui->findField->placeholderText());
    connect(m_ui->findField, &QLineEdit::textChanged, this, [this](const QString& text) {
        m_tableViewModel->setFindText(text);
    });
    m_ui->findField->installEventFilter(this);
    connect(new QShortcut(QKeySequence::Find, this), &QShortcut::activated, this, [this] {
        m_ui->findField->setFocus(Qt::ShortcutFocusReason);
        m_ui->findField->selectAll();
    });
    connect(new QShortcut(QKeySequence::Refresh, this), &QShortcut::activated, this, [this] {
        if (m_ui->refreshButton->isEnabled())
            refresh();
    });

    ThemeTableView* table = m_ui->themeTableView;
    table->registerView(ThemeCellView::reuseIdentifier, [this] {
        auto cell = new ThemeCellView;
        cell->installEventFilter(this); // for its context menu
        return cell;
    });
    if (QWidget* prototype = table->makeView(ThemeCellView::reuseIdentifier))
        table->setRowHeight(prototype->sizeHint().height() + 1);
    table->registerView(ThemeSectionHeaderView::reuseIdentifier, [] { return new ThemeSectionHeaderView; });

    // The loading overlay first, the all-up-to-date overlay above it.
    m_loadingViewController->attach(table);
    m_allUpToDateViewController->attach(table);

    table->setViewProvider([this](ThemeTableView& tableView, int row) { return viewForRow(tableView, row); });
    // Every replacement of the rows resets the model; the table reloads on it.
    table->setModel(m_tableViewModel);
    // After the table's own handling of a reset, which scrolls it to the top.
    connect(m_tableViewModel, &QAbstractItemModel::modelReset, this, &ThemeListViewController::rowsReplaced);
    connect(table, &ThemeTableView::rowsOnScreenChanged, this, &ThemeListViewController::loadPreviewsOnScreen);
}

ThemeListViewController::~ThemeListViewController() = default;

QWidget* ThemeListViewController::viewForRow(ThemeTableView& table, int row)
{
    const int entry = m_tableViewModel->entryIndex(row);
    if (entry < 0) {
        auto header = qobject_cast<ThemeSectionHeaderView*>(table.makeView(ThemeSectionHeaderView::reuseIdentifier));
        if (header)
            header->configure(m_tableViewModel->headerTitle(row));
        return header;
    }
    auto cell = qobject_cast<ThemeCellView*>(table.makeView(ThemeCellView::reuseIdentifier));
    if (!cell)
        return nullptr;
    const ThemeEntry& shown = m_tableViewModel->entries().at(entry);
    cell->configure(shown, m_tableViewModel->showsSkipped() && m_tableViewModel->isSkipped(shown));
    cell->setDelegate(this);
    if (m_previewLoader) {
        const QPixmap* preview = m_previewLoader->cached(shown.copyCommand.sourcePath);
        cell->showPreview(true, preview ? *preview : QPixmap());
    } else {
        cell->showPreview(false);
    }
    return cell;
}

void ThemeListViewController::setPreviewProvider(std::shared_ptr<ProvidesThemePreviews> provider)
{
    m_previewLoader.reset();
    if (provider) {
        m_previewLoader = std::make_unique<ThemePreviewLoader>(std::move(provider), ThemePreviewView::previewSize);
        connect(m_previewLoader.get(), &ThemePreviewLoader::previewReady, this, &ThemeListViewController::previewArrived);
    }
    m_ui->themeTableView->reloadData();
    loadPreviewsOnScreen();
}

void ThemeListViewController::loadPreviewsOnScreen()
{
    if (!m_previewLoader)
        return;
    const QList<ThemeEntry>& entries = m_tableViewModel->entries();
    QStringList paths;
    for (const int row : m_ui->themeTableView->rowsWithCells()) {
        // Section headers have no theme and no preview.
        if (const int entry = m_tableViewModel->entryIndex(row); entry >= 0 && entry < entries.size())
            paths.append(entries.at(entry).copyCommand.sourcePath);
    }
    m_previewLoader->want(paths);
}

void ThemeListViewController::previewArrived(const QString& path)
{
    const QPixmap* preview = m_previewLoader ? m_previewLoader->cached(path) : nullptr;
    if (!preview)
        return;
    const QList<ThemeEntry>& entries = m_tableViewModel->entries();
    for (const int row : m_ui->themeTableView->rowsWithCells()) {
        const int entry = m_tableViewModel->entryIndex(row);
        if (entry >= 0 && entry < entries.size() && entries.at(entry).copyCommand.sourcePath == path) {
            if (auto cell = qobject_cast<ThemeCellView*>(m_ui->themeTableView->cellForRow(row)))
                cell->showPreview(true, *preview);
        }
    }
}

void ThemeListViewController::updateButtons(const ThemeListState& state)
{
    const bool loading = !state.has_value();
    // Before the buttons that may hold the focus are disabled.
    if (loading)
        parkFocusWhileBusy();
    setBusy(loading, false);
    const bool hasRows = state && *state && !(*state)->isEmpty();
    m_ui->updateAllButton->setEnabled(hasRows);
    m_ui->refreshButton->setEnabled(!loading);
    if (state && *state) {
        reloadSkippedVersions();
        m_checked.start();
        m_summaryClock->start();
    } else {
        m_checked.invalidate();
        m_summaryClock->stop();
    }
    showSummary();
}

void ThemeListViewController::setSettings(QSettings* settings)
{
    m_settings = settings;
    changeSkippedVersions([](SkippedVersions&) {});
}

void ThemeListViewController::reloadSkippedVersions()
{
    // The host may have changed the skips meanwhile (forgotten them, say): the new rows follow its
    // settings. The rows are not in yet, so this reset must not settle the focus and scroll position.
    QSettings defaults;
    SkippedVersions fresh = SkippedVersions::load(m_settings ? *m_settings : defaults);
    if (fresh == m_tableViewModel->skippedVersions())
        return;
    QScopedValueRollback quiet(m_reloadingSkips, true);
    m_tableViewModel->setSkippedVersions(std::move(fresh));
}

void ThemeListViewController::skipVersion(const ThemeEntry& entry)
{
    changeSkippedVersions([&](SkippedVersions& skipped) { skipped.skip(entry); });
}

void ThemeListViewController::unskipVersion(const ThemeEntry& entry)
{
    changeSkippedVersions([&](SkippedVersions& skipped) { skipped.unskip(entry); });
}

void ThemeListViewController::changeSkippedVersions(const std::function<void(SkippedVersions&)>& change)
{
    QSettings defaults;
    QSettings& settings = m_settings ? *m_settings : defaults;
    // Read again first: the host, or another window over the same settings, may have changed them.
    SkippedVersions skipped = SkippedVersions::load(settings);
    const SkippedVersions before = skipped;
    change(skipped);
    if (!(skipped == before)) {
        skipped.save(settings);
        settings.sync();
    }
    const int scroll = m_ui->themeTableView->verticalScrollBar()->value();
    m_tableViewModel->setSkippedVersions(std::move(skipped));
    // Hiding one row must not throw the user back to the top of the list.
    m_ui->themeTableView->layoutNow();
    m_ui->themeTableView->verticalScrollBar()->setValue(scroll);
    showAllUpToDateIfEverythingSkipped();
}

void ThemeListViewController::showSkippedToggleIfUseful()
{
    // Offered while something is skipped, and kept while it is on so it can be turned off again.
    m_ui->showSkippedToggle->setVisible(m_tableViewModel->skippedCount() > 0 || m_ui->showSkippedToggle->isChecked());
}

void ThemeListViewController::showSummary()
{
    if (!m_checked.isValid() || m_loading) {
        m_ui->summaryLabel->hide();
        return;
    }
    m_ui->summaryLabel->setText(listSummary(m_tableViewModel->waitingCount(),
                                            std::chrono::seconds(m_checked.elapsed() / 1000)));
    m_ui->summaryLabel->show();
}

void ThemeListViewController::showAllUpToDateIfEverythingSkipped()
{
    if (m_loading || m_installing || m_tableViewModel->allEntries().isEmpty())
        return;
    // Every row skipped and none asked for: as good as up to date.
    if (m_tableViewModel->rowCount() == 0 && !m_tableViewModel->isFiltered())
        m_allUpToDateViewController->show();
    else
        m_allUpToDateViewController->hide();
}

void ThemeListViewController::showInstallProgress(qsizetype installed, qsizetype total)
{
    becomeBusyInstalling();
    m_loadingViewController->showProgress(installed, total);
}

void ThemeListViewController::showUndoProgress(qsizetype undone, qsizetype total)
{
    becomeBusyInstalling();
    m_loadingViewController->showUndoProgress(undone, total);
}

void ThemeListViewController::becomeBusyInstalling()
{
    if (m_installing)
        return;
    parkFocusWhileBusy();
    setBusy(m_loading, true);
    m_ui->updateAllButton->setEnabled(false);
    m_ui->refreshButton->setEnabled(false);
    m_allUpToDateViewController->hide();
}

void ThemeListViewController::showInstallEnded()
{
    if (!m_installing)
        return;
    setBusy(m_loading, false);
    m_ui->updateAllButton->setEnabled(!m_loading && !m_tableViewModel->actionableEntries().isEmpty());
    m_ui->refreshButton->setEnabled(!m_loading);
    m_loadingViewController->hide();
    restorePlace();
}

void ThemeListViewController::showSynchronizationProgress(const SynchronizationProgress& progress)
{
    if (m_loading && !m_installing)
        m_loadingViewController->showSynchronizationProgress(progress);
}

void ThemeListViewController::setBusy(bool loading, bool installing)
{
    m_loading = loading;
    m_installing = installing;
    m_undoNotice->setUndoEnabled(!loading && !installing);
}

void ThemeListViewController::showUndoNotice(const InstallBatchSummary& summary)
{
    m_undoNotice->showFor(summary);
}

bool ThemeListViewController::acceptsRowActions() const
{
    if (m_loading || m_installing)
        return false;
    return !m_rowsMoved.isValid() || m_rowsMoved.elapsed() >= QApplication::doubleClickInterval();
}

void ThemeListViewController::showUpdateAllTitle()
{
    if (!m_tableViewModel->isFiltered()) {
        //% "Update All"
        m_ui->updateAllButton->setText(localizedString(QT_TRID_NOOP("corvane.list.update-all"), "Update All"));
        return;
    }
    // Update All acts on the rows shown, and says so.
    const int shown = int(m_tableViewModel->actionableEntries().size());
    //% "Update %1 Shown"
    const QString format = localizedCountedString(QT_TRID_N_NOOP("corvane.list.update-shown"), shown,
                                                  "Update %1 Shown", "Update %1 Shown");
    m_ui->updateAllButton->setText(fillPlaceholders(format, {localizedNumber(shown)}));
}

bool ThemeListViewController::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_ui->findField && event->type() == QEvent::KeyPress
        && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape && !m_ui->findField->text().isEmpty()) {
        m_ui->findField->clear();
        return true;
    }
    if (event->type() == QEvent::ContextMenu) {
        if (auto cell = qobject_cast<ThemeCellView*>(watched); cell && cell->copyCommand()) {
            showRowMenu(*cell, static_cast<QContextMenuEvent*>(event)->globalPos());
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}

void ThemeListViewController::showRowMenu(const ThemeCellView& cell, const QPoint& at)
{
    const CopyCommand command = *cell.copyCommand();
    const QString name = cell.themeNameLabel()->text();
    const QList<ThemeEntry>& entries = m_tableViewModel->entries();
    const auto shown = std::find_if(entries.cbegin(), entries.cend(),
                                    [&](const ThemeEntry& entry) { return entry.copyCommand == command; });
    QMenu menu(this);
    if (shown != entries.cend()) {
        const ThemeEntry entry = *shown;
        if (m_tableViewModel->isSkipped(entry)) {
            //% "Stop Skipping This Version"
            menu.addAction(localizedString(QT_TRID_NOOP("corvane.row.unskip"), "Stop Skipping This Version"), this,
                           [this, entry] { unskipVersion(entry); });
        } else {
            //% "Skip This Version"
            menu.addAction(localizedString(QT_TRID_NOOP("corvane.row.skip"), "Skip This Version"), this,
                           [this, entry] { skipVersion(entry); });
        }
        menu.addSeparator();
    }
    //% "Show in Folder"
    menu.addAction(localizedString(QT_TRID_NOOP("corvane.row.show-in-folder"), "Show in Folder"), this, [command] {
        // The installed file's folder when there is one, else the repository's copy of the theme.
        const QString file = QFileInfo::exists(command.destinationPath) ? command.destinationPath : command.sourcePath;
        QDesktopServices::openUrl(QUrl::fromLocalFile(QFileInfo(file).absolutePath()));
    });
    //% "Copy Name"
    menu.addAction(localizedString(QT_TRID_NOOP("corvane.row.copy-name"), "Copy Name"), this,
                   [name] { QGuiApplication::clipboard()->setText(name); });
    menu.exec(at);
}

void ThemeListViewController::parkFocusWhileBusy()
{
    ThemeTableView* table = m_ui->themeTableView;
    if (!m_scrollPosition)
        m_scrollPosition = table->verticalScrollBar()->value();
    QWidget* focus = window()->focusWidget();
    if (!focus || !isAncestorOf(focus))
        return;
    if (m_focusPlace == FocusPlace::None) {
        if (focus == m_ui->refreshButton) {
            m_focusPlace = FocusPlace::Refresh;
        } else if (focus == m_ui->updateAllButton) {
            m_focusPlace = FocusPlace::UpdateAll;
        } else if (const int row = table->focusedRow(); row >= 0) {
            m_focusPlace = FocusPlace::Row;
            m_focusRow = row;
        }
    }
    // The buttons are about to be disabled and the rows emptied: the list itself keeps the focus in
    // the window meanwhile, so the next Tab goes on from here rather than starting over.
    if (m_focusPlace != FocusPlace::None)
        table->setFocus(Qt::OtherFocusReason);
}

void ThemeListViewController::rowsReplaced()
{
    if (m_reloadingSkips)
        return;
    m_rowsMoved.start();
    showUpdateAllTitle();
    showSkippedToggleIfUseful();
    showSummary();
    if (!m_loading && !m_installing)
        m_ui->updateAllButton->setEnabled(!m_tableViewModel->actionableEntries().isEmpty());
    // The emptied list of a reload: the place is restored when the new rows arrive.
    if (!m_loading)
        restorePlace();
}

void ThemeListViewController::restorePlace()
{
    ThemeTableView* table = m_ui->themeTableView;
    // Lay the rows out now, so the scroll range is known and no frame shows them half placed.
    table->layoutNow();
    if (m_scrollPosition && !m_installing)
        table->verticalScrollBar()->setValue(*m_scrollPosition);
    m_scrollPosition.reset();

    const FocusPlace place = std::exchange(m_focusPlace, FocusPlace::None);
    QWidget* focus = window()->focusWidget();
    // Focus the user moved elsewhere meanwhile stays where they put it.
    if (focus && focus != table && focus != this)
        return;
    const int rows = table->numberOfRows();
    QPushButton* fallback = m_ui->refreshButton->isEnabled() ? m_ui->refreshButton : m_ui->openThemeDirectoryButton;
    switch (place) {
    case FocusPlace::None:
        return;
    case FocusPlace::Row:
        // The row that took the acted-on row's place, or the last one when it was the last.
        if (rows > 0
            && (table->focusRowOrNext(std::min(m_focusRow, rows - 1), 1, Qt::OtherFocusReason)
                || table->focusRowOrNext(std::min(m_focusRow, rows - 1), -1, Qt::OtherFocusReason)))
            return;
        break;
    case FocusPlace::Refresh:
        break;
    case FocusPlace::UpdateAll:
        if (m_ui->updateAllButton->isEnabled())
            fallback = m_ui->updateAllButton;
        break;
    }
    fallback->setFocus(Qt::OtherFocusReason);
}

void ThemeListViewController::updateStatusViews(const ThemeListState& state)
{
    // A list of nothing but skipped versions is as good as up to date, unless skipped rows are asked for.
    const auto everyRowHidden = [this](const ThemeEntry& entry) {
        return !m_tableViewModel->showsSkipped() && m_tableViewModel->isSkipped(entry);
    };
    if (!state) {
        m_loadingViewController->show();
        m_allUpToDateViewController->hide();
    } else if (*state && std::all_of((*state)->cbegin(), (*state)->cend(), everyRowHidden)) {
        // The loading overlay stays until the all-up-to-date one covers it, so nothing flickers.
        QPointer<LoadingViewController> loading = m_loadingViewController;
        m_allUpToDateViewController->show([loading] {
            if (loading)
                loading->hide();
        });
    } else {
        m_loadingViewController->hide();
        m_allUpToDateViewController->hide();
    }
}

void ThemeListViewController::installTheme(const CopyCommand& copyCommand)
{
    if (!acceptsRowActions())
        return;
    const auto delegate = m_delegate.lock();
    if (!delegate)
        return;
    // The row acted on: once the list is rebuilt, the row that takes its place gets the focus and
    // the rows around it stay where they were.
    const QList<ThemeEntry>& entries = m_tableViewModel->entries();
    const auto acted = std::find_if(entries.cbegin(), entries.cend(),
                                    [&](const ThemeEntry& entry) { return entry.copyCommand == copyCommand; });
    if (acted != entries.cend()) {
        m_focusPlace = FocusPlace::Row;
        m_focusRow = m_tableViewModel->rowOfEntry(int(acted - entries.cbegin()));
    }
    m_scrollPosition = m_ui->themeTableView->verticalScrollBar()->value();
    delegate->installThemes({copyCommand});
    // A copy that failed leaves the list as it was: nothing to come back to.
    if (!m_loading && !m_installing) {
        m_focusPlace = FocusPlace::None;
        m_scrollPosition.reset();
    }
}

void ThemeListViewController::updateAll()
{
    const auto delegate = m_delegate.lock();
    if (!delegate || m_installing)
        return;
    // The rows shown, less the versions the user skipped.
    const QList<ThemeEntry> entries = m_tableViewModel->actionableEntries();
    QList<CopyCommand> commands;
    commands.reserve(entries.size());
    for (const ThemeEntry& entry : entries)
        commands.append(entry.copyCommand);
    delegate->installThemes(commands);
}

void ThemeListViewController::refresh()
{
    if (const auto delegate = m_delegate.lock())
        delegate->refreshThemes();
}

void ThemeListViewController::openThemeDirectory()
{
    if (const auto delegate = m_delegate.lock())
        delegate->openThemeDirectory();
}

ThemeTableView* ThemeListViewController::themeTableView() const { return m_ui->themeTableView; }
QPushButton* ThemeListViewController::updateAllButton() const { return m_ui->updateAllButton; }
QPushButton* ThemeListViewController::refreshButton() const { return m_ui->refreshButton; }
QPushButton* ThemeListViewController::openThemeDirectoryButton() const { return m_ui->openThemeDirectoryButton; }
QLineEdit* ThemeListViewController::findField() const { return m_ui->findField; }
QCheckBox* ThemeListViewController::showSkippedToggle() const { return m_ui->showSkippedToggle; }
QLabel* ThemeListViewController::summaryLabel() const { return m_ui->summaryLabel; }

bool ThemeListViewController::isAnimating() const
{
    return m_loadingViewController->isFading() || m_allUpToDateViewController->isFading();
}

bool ThemeListViewController::focusNextPrevChild(bool next)
{
    // Tab goes round a ring: the find field, the rows in their order (most rows have no widget until
    // they scroll in), the buttons, and the find field again.
    ThemeTableView* table = m_ui->themeTableView;
    QLineEdit* find = m_ui->findField;
    const QList<QAbstractButton*> buttons = [this] {
        QList<QAbstractButton*> usable;
        for (QAbstractButton* button : std::initializer_list<QAbstractButton*>{
                 m_ui->openThemeDirectoryButton, m_ui->showSkippedToggle, m_ui->refreshButton, m_ui->updateAllButton}) {
            if (button->isEnabled() && button->isVisible())
                usable.append(button);
        }
        return usable;
    }();
    const int rows = table->numberOfRows();
    const Qt::FocusReason reason = next ? Qt::TabFocusReason : Qt::BacktabFocusReason;
    const auto focusOn = [reason](QWidget* widget) {
        widget->setFocus(reason);
        return true;
    };
    const auto enterRows = [&] {
        if (rows == 0)
            return false;
        const int row = next ? table->firstVisibleRow() : std::max(table->firstVisibleRow(), table->lastVisibleRow());
        return table->focusRowOrNext(std::clamp(row, 0, rows - 1), next ? 1 : -1, reason);
    };
    // Past the rows: the buttons going forward, the find field going back.
    const auto leaveRows = [&] {
        if (next)
            return focusOn(buttons.isEmpty() ? static_cast<QWidget*>(find) : buttons.first());
        return focusOn(find);
    };

    QWidget* focus = QApplication::focusWidget();
    const int buttonIndex = int(buttons.indexOf(qobject_cast<QAbstractButton*>(focus)));
    if (focus == find) {
        if (next)
            return enterRows() || focusOn(buttons.isEmpty() ? static_cast<QWidget*>(find) : buttons.first());
        return focusOn(buttons.isEmpty() ? static_cast<QWidget*>(find) : buttons.last());
    }
    if (focus && (focus == table || table->isAncestorOf(focus))) {
        const int row = table->focusedRow();
        const int target = next ? row + 1 : row - 1;
        if (row >= 0 && target >= 0 && target < rows && table->focusRowOrNext(target, next ? 1 : -1, reason))
            return true;
        return leaveRows();
    }
    if (buttonIndex >= 0) {
        const int target = next ? buttonIndex + 1 : buttonIndex - 1;
        if (target >= 0 && target < buttons.size())
            return focusOn(buttons.at(target));
        if (next)
            return focusOn(find);
        return enterRows() || focusOn(find);
    }
    return QWidget::focusNextPrevChild(next);
}

} // namespace corvane
