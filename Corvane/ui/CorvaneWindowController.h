// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/presentation/ShowsThemeUpdates.h"

#include <QObject>
#include <QPointer>
#include <QWidget>

#include <memory>

class QSettings;

namespace corvane {

class ThemeListViewController;

// Controls the updater window: sets it up once it is made, finds the theme list that is its content,
// and shows each display state the presenter hands it, with the fetch-failed alert for a failure.
// The window's frame is remembered in the host's QSettings under the group "Corvane".
class CorvaneWindowController : public QObject, public ShowsThemeUpdates {
    Q_OBJECT

public:
    // Takes ownership of the window (none is allowed: a controller without a window). The frame is kept
    // in frameSettings when given (it must outlive the controller), else in the default QSettings.
    explicit CorvaneWindowController(QWidget* window = nullptr, QSettings* frameSettings = nullptr);
    ~CorvaneWindowController() override;

    // A window controller whose window is made from the "Corvane" form.
    // With a parent, the window is a window of its own that stays transient for the parent's window.
    static std::shared_ptr<CorvaneWindowController> fromForm(QWidget* parent = nullptr, QSettings* frameSettings = nullptr);
    // A controller for the form's content set up inside a host's widget (a settings page): the host owns
    // and places the widget, so the controller neither deletes it, nor moves it, nor keeps a frame.
    static std::shared_ptr<CorvaneWindowController> embeddedIn(QWidget* content);

    QWidget* window() const { return m_window; }
    ThemeListViewController* listViewController() const { return m_listViewController; }

    void showWindow();
    void close();

    void showThemeEntries(const ThemeListState& state) override;
    void showInstallProgress(qsizetype installed, qsizetype total) override;
    void showSynchronizationProgress(const SynchronizationProgress& progress) override;
    void showUndoProgress(qsizetype undone, qsizetype total) override;
    void showInstallEnded() override;

    static inline const QString settingsGroup = QStringLiteral("Corvane");

signals:
    // After the list, the buttons and the overlays took a state, before any alert is shown; a failure
    // comes with the description the alert shows.
    void themeEntriesShown(bool loading, bool failed, const QString& failureDescription);
    // The window was closed, by the user or by close().
    void windowClosed();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void windowDidLoad();
    void saveFrame();
    void placeBeforeShowing();

    QPointer<QWidget> m_window;
    QPointer<QSettings> m_frameSettings;
    bool m_embedded = false;
    // The frame the window had when it was last hidden; it comes back there when shown again.
    QByteArray m_frame;
    QPointer<ThemeListViewController> m_listViewController;
};

} // namespace corvane
