// SPDX-License-Identifier: MIT
#include "Corvane/ui/CorvaneWindowController.h"

#include "Corvane/module/Localized.h"
#include "Corvane/ui/AlertWindowScope.h"
#include "Corvane/ui/Alerts.h"
#include "Corvane/ui/ThemeListViewController.h"
#include "Corvane/ui/ThemeTableModel.h"
#include "ui_Corvane.h"

#include <QApplication>
#include <QScreen>
#include <QEvent>
#include <QSettings>

#include <algorithm>

namespace corvane {
namespace {

const QString frameKey = QStringLiteral("windowGeometry");

} // namespace

CorvaneWindowController::CorvaneWindowController(QWidget* window, QSettings* frameSettings)
    : m_window(window), m_frameSettings(frameSettings)
{
    windowDidLoad();
}

CorvaneWindowController::~CorvaneWindowController()
{
    if (!m_window || m_embedded)
        return;
    if (m_window->isVisible())
        saveFrame();
    // Later, not now: a row's button or an alert of this window may still be on the stack.
    if (QCoreApplication::instance())
        m_window->deleteLater();
    else
        delete m_window.data();
}

std::shared_ptr<CorvaneWindowController> CorvaneWindowController::fromForm(QWidget* parent, QSettings* frameSettings)
{
    auto window = new QWidget(parent, Qt::Window);
    Ui::CorvaneWindow form;
    form.setupUi(window);
    return std::make_shared<CorvaneWindowController>(window, frameSettings);
}

std::shared_ptr<CorvaneWindowController> CorvaneWindowController::embeddedIn(QWidget* content)
{
    auto controller = std::make_shared<CorvaneWindowController>();
    controller->m_embedded = true;
    controller->m_window = content;
    controller->m_listViewController =
        content->findChild<ThemeListViewController*>(QStringLiteral("contentViewController"));
    return controller;
}

void CorvaneWindowController::windowDidLoad()
{
    if (m_window) {
        //% "Theme Updates"
        m_window->setWindowTitle(localizedString(QT_TRID_NOOP("corvane.window.title"), "Theme Updates"));
        m_window->setAttribute(Qt::WA_DeleteOnClose, false);
        QSettings defaults;
        QSettings& settings = m_frameSettings ? *m_frameSettings : defaults;
        settings.beginGroup(settingsGroup);
        m_frame = settings.value(frameKey).toByteArray();
        settings.endGroup();
        m_window->installEventFilter(this);
        m_listViewController = m_window->findChild<ThemeListViewController*>(QStringLiteral("contentViewController"));
        // The versions the user skipped live beside the frame, in the host's settings.
        if (m_listViewController)
            m_listViewController->setSettings(m_frameSettings);
    }
}

void CorvaneWindowController::showWindow()
{
    if (!m_window || m_embedded)
        return;
    // A window already on screen comes to the front; a hidden one does so by being shown.
    const bool wasVisible = m_window->isVisible();
    if (!wasVisible)
        placeBeforeShowing();
    m_window->show();
    if (wasVisible)
        m_window->raise();
    m_window->activateWindow();
}

void CorvaneWindowController::placeBeforeShowing()
{
    // Where the user left it, in this run or an earlier one. A window manager places a window anew
    // each time it is mapped unless the window asks for a position, so the frame is given back on
    // every show, not only the first.
    if (!m_frame.isEmpty() && m_window->restoreGeometry(m_frame))
        return;
    // The first time: over the host's window it was given, else over the window the user was working
    // in, as a host's own dialogs open.
    QWidget* host = m_window->parentWidget() ? m_window->parentWidget()->window() : QApplication::activeWindow();
    if (!host || host == m_window)
        return;
    const QRect hostFrame = host->frameGeometry();
    QRect frame(QPoint(), m_window->size());
    frame.moveCenter(hostFrame.center());
    if (const QScreen* screen = host->screen()) {
        // Whole on the host's screen, even when the host hangs over its edge.
        const QRect area = screen->availableGeometry();
        frame.moveLeft(std::clamp(frame.left(), area.left(), std::max(area.left(), area.right() + 1 - frame.width())));
        frame.moveTop(std::clamp(frame.top(), area.top(), std::max(area.top(), area.bottom() + 1 - frame.height())));
    }
    m_window->move(frame.topLeft());
}

void CorvaneWindowController::close()
{
    if (m_window && !m_embedded)
        m_window->close();
}

void CorvaneWindowController::showThemeEntries(const ThemeListState& state)
{
    // Without a list there is nothing to show the state in; the packaging fault was reported when
    // the window was assembled.
    if (!m_listViewController)
        return;
    m_listViewController->updateButtons(state);
    m_listViewController->updateStatusViews(state);
    m_listViewController->tableViewModel().setEntries(state && *state ? **state : QList<ThemeEntry>{});
    const bool failed = state && !*state;
    emit themeEntriesShown(!state, failed, failed ? state->error().errorDescription() : QString());

    if (state && !*state) {
        QPointer<ThemeListViewController> list = m_listViewController;
        AlertWindowScope scope(m_window);
        if (showFetchFailedAlert(state->error()) && list) {
            if (const auto delegate = list->delegate())
                delegate->refreshThemes();
        }
    }
}

void CorvaneWindowController::showInstallProgress(qsizetype installed, qsizetype total)
{
    if (m_listViewController)
        m_listViewController->showInstallProgress(installed, total);
}

void CorvaneWindowController::showSynchronizationProgress(const SynchronizationProgress& progress)
{
    if (m_listViewController)
        m_listViewController->showSynchronizationProgress(progress);
}

void CorvaneWindowController::showUndoProgress(qsizetype undone, qsizetype total)
{
    if (m_listViewController)
        m_listViewController->showUndoProgress(undone, total);
}

void CorvaneWindowController::showInstallEnded()
{
    if (m_listViewController)
        m_listViewController->showInstallEnded();
}

bool CorvaneWindowController::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_window && event->type() == QEvent::Hide)
        saveFrame();
    if (watched == m_window && event->type() == QEvent::Close && m_window->isVisible())
        emit windowClosed();
    return QObject::eventFilter(watched, event);
}

void CorvaneWindowController::saveFrame()
{
    m_frame = m_window->saveGeometry();
    QSettings defaults;
    QSettings& settings = m_frameSettings ? *m_frameSettings : defaults;
    settings.beginGroup(settingsGroup);
    settings.setValue(frameKey, m_frame);
    settings.endGroup();
}

} // namespace corvane
