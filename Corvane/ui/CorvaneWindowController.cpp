// SPDX-License-Identifier: MIT
#include "Corvane/ui/CorvaneWindowController.h"

#include "Corvane/module/Localized.h"
#include "Corvane/presentation/Alerts.h"
#include "Corvane/ui/ThemeListViewController.h"
#include "Corvane/ui/ThemeTableModel.h"
#include "ui_Corvane.h"

#include <QCoreApplication>
#include <QEvent>
#include <QSettings>

namespace corvane {
namespace {

const QString frameKey = QStringLiteral("windowGeometry");

} // namespace

CorvaneWindowController::CorvaneWindowController(QWidget* window)
    : m_window(window)
{
    windowDidLoad();
}

CorvaneWindowController::~CorvaneWindowController()
{
    if (!m_window)
        return;
    if (m_window->isVisible())
        saveFrame();
    // Later, not now: a row's button or an alert of this window may still be on the stack.
    if (QCoreApplication::instance())
        m_window->deleteLater();
    else
        delete m_window.data();
}

std::shared_ptr<CorvaneWindowController> CorvaneWindowController::fromForm()
{
    auto window = new QWidget;
    Ui::CorvaneWindow form;
    form.setupUi(window);
    return std::make_shared<CorvaneWindowController>(window);
}

void CorvaneWindowController::windowDidLoad()
{
    if (m_window) {
        //% "Theme Updates"
        m_window->setWindowTitle(localizedString(QT_TRID_NOOP("corvane.window.title"), "Theme Updates"));
        m_window->setAttribute(Qt::WA_DeleteOnClose, false);
        QSettings settings;
        settings.beginGroup(settingsGroup);
        const QByteArray frame = settings.value(frameKey).toByteArray();
        if (!frame.isEmpty())
            m_window->restoreGeometry(frame);
        m_window->installEventFilter(this);
        m_listViewController = m_window->findChild<ThemeListViewController*>(QStringLiteral("contentViewController"));
    }
}

void CorvaneWindowController::showWindow()
{
    if (!m_window)
        return;
    // A window already on screen comes to the front; a hidden one does so by being shown.
    const bool wasVisible = m_window->isVisible();
    m_window->show();
    if (wasVisible)
        m_window->raise();
    m_window->activateWindow();
}

void CorvaneWindowController::close()
{
    if (m_window)
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
        if (showFetchFailedAlert(state->error()) && list) {
            if (const auto delegate = list->delegate())
                delegate->refreshThemes();
        }
    }
}

bool CorvaneWindowController::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_window && event->type() == QEvent::Hide)
        saveFrame();
    return QObject::eventFilter(watched, event);
}

void CorvaneWindowController::saveFrame() const
{
    QSettings settings;
    settings.beginGroup(settingsGroup);
    settings.setValue(frameKey, m_window->saveGeometry());
}

} // namespace corvane
