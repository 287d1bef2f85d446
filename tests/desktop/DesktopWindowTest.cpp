// SPDX-License-Identifier: MIT
// The updater on a real X server with a window manager (run through on-desktop.sh): what reaches the
// screen is read back from the root window, not rendered off screen, and clicks and keys travel through
// the X server with xdotool, as a person's do.
#include "Corvane/module/CorvaneWireframe.h"
#include "Corvane/ui/AlertDialog.h"
#include "Corvane/ui/CorvaneWindowController.h"
#include "Corvane/ui/LoadingViewController.h"
#include "Corvane/ui/ThemeCellView.h"
#include "Corvane/ui/ThemeListViewController.h"
#include "Corvane/ui/ThemeTableModel.h"
#include "Corvane/ui/ThemeTableView.h"

#include "DesktopScreen.h"
#include "GitDaemon.h"
#include "GitRepositoryFixture.h"
#include "ScriptedProxy.h"
#include "ThemeFiles.h"
#include "TrashSandbox.h"

#include <QApplication>
#include <QClipboard>
#include <QDir>
#include <QElapsedTimer>
#include <QLabel>
#include <QLineEdit>
#include <QProcess>
#include <QProgressBar>
#include <QPushButton>
#include <QScreen>
#include <QSettings>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <algorithm>

using namespace corvane;
using namespace corvane::test;
using namespace Qt::StringLiterals;

class DesktopWindowTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { startDesktopTest(m_settings); }

    void loadingOverlayFadesInAndStaysOnScreenDuringASlowFetch()
    {
        TrashSandbox trash;
        Updater updater(3);
        GitDaemon daemon(updater.directory.filePath(u"remote"_s));
        QVERIFY(daemon.isRunning());
        ScriptedProxy proxy(u"delaying-proxy.py"_s, {QString::number(daemon.port()), u"4"_s}); // holds each connection 4 s
        QVERIFY(proxy.isRunning());

        QElapsedTimer sinceShow;
        updater.open(QUrl(u"git://127.0.0.1:%1/themes"_s.arg(proxy.port())));
        sinceShow.start();
        LoadingViewController* loading = updater.list->loadingViewController();
        auto message = loading->findChild<QLabel*>(u"messageLabel"_s);
        QVERIFY(message);
        const QRect messageArea = globalRect(message);
        const QRect barArea = globalRect(loading->loadingIndicator());
        const QColor accent = loading->loadingIndicator()->palette().color(QPalette::Highlight);

        // One frame every 50 ms for the first 1.2 s: the text darkens through the fade, frame by frame.
        QList<int> darkness;
        while (sinceShow.elapsed() < 1200) {
            const QImage frame = screenAt(messageArea);
            darkness << darkestGrey(frame);
            QTest::qWait(50);
        }
        const int unseen = darkness.first(), shown = darkness.last();
        QVERIFY2(unseen - shown > 60, qPrintable(u"text never got darker: %1 → %2"_s.arg(unseen).arg(shown)));
        const auto between = std::count_if(darkness.cbegin(), darkness.cend(),
                                           [&](int grey) { return grey < unseen - 10 && grey > shown + 10; });
        QStringList greys;
        for (const int grey : darkness)
            greys << QString::number(grey);
        QVERIFY2(between >= 3, qPrintable(u"no intermediate opacities: "_s + greys.join(u' ')));

        // Still fetching: the busy bar is on the screen, drawn in the accent colour.
        QVERIFY(!updater.settled());
        const QImage bar = screenAt(barArea);
        keepWindowFrame(updater.wireframe->windowController()->window(), u"loading-overlay-1s"_s);
        QVERIFY2(shareNear(bar, accent) > 0.3, "the busy bar is not on the screen");
        QVERIFY(pixelsDarkerThan(screenAt(messageArea), 160) > 20);

        QTRY_VERIFY_WITH_TIMEOUT(updater.settled(), comparisonTimeout);
    }

    void noFrameAfterAnInstallShowsARowWithoutItsButton()
    {
        TrashSandbox trash;
        Updater updater(12);
        updater.openReady(updater.remote.fileUrl());

        ThemeTableView* table = updater.list->themeTableView();
        ThemeCellView* first = updater.cell(0);
        QVERIFY(first);
        const QRect nameInCell = first->themeNameLabel()->geometry().intersected(QRect(0, 0, 60, first->height()));
        const QRect buttonInCell = first->updateButton()->geometry();
        const int pitch = table->rowHeight();
        const QPoint viewportOrigin = table->viewport()->mapToGlobal(QPoint(0, 0));
        const int rowsOnScreen = table->viewport()->height() / pitch;

        int checked = 0;
        const auto checkFrame = [&](const QString& when) {
            const QImage frame = screenAt(QRect(viewportOrigin, table->viewport()->size()));
            for (int row = 0; row < rowsOnScreen; ++row) {
                const QImage name = frame.copy(nameInCell.translated(0, row * pitch));
                const QImage button = frame.copy(buttonInCell.translated(0, row * pitch));
                if (pixelsDarkerThan(name, 150) == 0)
                    continue; // no row drawn here in this frame
                ++checked;
                if (pixelsDarkerThan(button, 235) < 20) {
                    keepFrame(frame, u"row-without-button"_s);
                    QFAIL(qPrintable(u"%1: row %2 is drawn without its button"_s.arg(when).arg(row)));
                }
            }
        };
        checkFrame(u"before"_s);
        QVERIFY(xdotool(clickAt(globalRect(updater.cell(2)->updateButton()).center())));
        QElapsedTimer watching;
        watching.start();
        while (watching.elapsed() < 1800) {
            checkFrame(u"%1 ms after the click"_s.arg(watching.elapsed()));
            if (QTest::currentTestFailed())
                return;
            QTest::qWait(30);
        }
        QTRY_VERIFY_WITH_TIMEOUT(updater.settled(), comparisonTimeout);
        checkFrame(u"settled"_s);
        QVERIFY(checked > 20);
        QCOMPARE(updater.list->tableViewModel().entries().size(), 12); // 13 rows, one installed
    }

    void twoClicksInQuickSuccessionInstallOneTheme()
    {
        TrashSandbox trash;
        Updater updater(6);
        updater.openReady(updater.remote.fileUrl());
        const int before = updater.installedCount();
        const QPoint button = globalRect(updater.cell(0)->updateButton()).center();
        // 300 ms apart: after the first, the list reloads and the next row moves under the pointer.
        QVERIFY(xdotool({u"mousemove"_s, QString::number(button.x()), QString::number(button.y()), u"click"_s, u"1"_s,
                         u"sleep"_s, u"0.3"_s, u"click"_s, u"1"_s}));
        QTRY_VERIFY_WITH_TIMEOUT(updater.settled(), comparisonTimeout);
        QTest::qWait(300);
        QTRY_VERIFY_WITH_TIMEOUT(updater.settled(), comparisonTimeout);
        QCOMPARE(updater.installedCount(), before + 1);
        // The focus went to the button of the row that took the installed row's place.
        QCOMPARE(updater.list->themeTableView()->focusedRow(), updater.list->tableViewModel().rowOfEntry(0));
    }

    void escapeAndTheTitleBarDoNotAnswerTheCopyingFailedAlert()
    {
        Updater updater(0);
        // A Trash that cannot be made (its data home is a file): replacing Harbor Night 1.2 fails.
        const QString notAFolder = writeFile(updater.directory.path(), u"data-home"_s, "a file");
        const QByteArray previous = qgetenv("XDG_DATA_HOME");
        qputenv("XDG_DATA_HOME", QFile::encodeName(notAFolder));
        const auto restore = qScopeGuard([&] { qputenv("XDG_DATA_HOME", previous); });
        updater.openReady(updater.remote.fileUrl());

        bool stillUp = false, clonePresent = false, installedPresent = false;
        QString seen, hints;
        QPoint centreOffset;
        QWidget* updaterWindow = updater.wireframe->windowController()->window();
        QTimer answer; // runs inside the alert's own modal loop
        answer.setInterval(50);
        int step = 0;
        connect(&answer, &QTimer::timeout, this, [&] {
            auto alert = qobject_cast<AlertDialog*>(QApplication::activeModalWidget());
            if (!alert || !alert->isVisible())
                return;
            if (step++ == 0) {
                seen = alert->title();
                QProcess xprop;
                xprop.start(u"xprop"_s, {u"-id"_s, QString::number(alert->winId()), u"_MOTIF_WM_HINTS"_s,
                                         u"_NET_WM_ALLOWED_ACTIONS"_s, u"WM_TRANSIENT_FOR"_s});
                xprop.waitForFinished(5000);
                hints = QString::fromUtf8(xprop.readAllStandardOutput());
                centreOffset = alert->frameGeometry().center() - updaterWindow->frameGeometry().center();
                keepFrame(screenAt(globalRect(alert->window()).adjusted(-8, -40, 8, 8)), u"copying-failed-alert"_s);
                // Escape, then the window manager's own close (Alt+F4 in openbox).
                QVERIFY(xdotool({u"key"_s, u"Escape"_s}));
                QVERIFY(xdotool({u"key"_s, u"alt+F4"_s}));
                return;
            }
            if (step < 10)
                return; // half a second for the keys to arrive
            stillUp = alert->isVisible();
            clonePresent = QFileInfo::exists(updater.clone + u"/.git"_s);
            installedPresent = QFileInfo::exists(updater.installed + u"/harbor-night.theme.json"_s);
            alert->button(0)->click(); // Continue
            answer.stop();
        });
        answer.start();
        QVERIFY(xdotool(clickAt(globalRect(updater.cell(0)->updateButton()).center())));
        QTRY_VERIFY_WITH_TIMEOUT(!answer.isActive(), 20000);
        QCOMPARE(seen, u"Copying Theme Failed"_s);
        // Transient for the updater and centred over it; the window manager is asked for no close
        // function (openbox keeps its close button anyway, and its close is refused as shown above).
        QVERIFY2(hints.contains(u"WM_TRANSIENT_FOR(WINDOW): window id # 0x%1"_s.arg(updaterWindow->winId(), 0, 16)),
                 qPrintable(hints));
        const QString motif = hints.section(u'\n', 0, 0).section(u'=', 1).trimmed();
        const qulonglong functions = motif.section(u',', 1, 1).trimmed().toULongLong(nullptr, 16);
        QVERIFY2((motif.section(u',', 0, 0).trimmed().toULongLong(nullptr, 16) & 1) && !(functions & (1 | 0x20)),
                 qPrintable(hints));
        QVERIFY2(std::abs(centreOffset.x()) < 40, qPrintable(u"%1 px off centre"_s.arg(centreOffset.x())));
        QVERIFY2(stillUp, "Escape or the window manager closed the alert");
        QVERIFY(clonePresent && installedPresent);
        QTest::qWait(300);
        QVERIFY(QFileInfo::exists(updater.clone + u"/.git"_s));
        QVERIFY(QFileInfo::exists(updater.installed + u"/harbor-night.theme.json"_s));
    }

    void findNarrowsTheRowsAndUpdateAllActsOnThoseShown()
    {
        TrashSandbox trash;
        Updater updater(12); // Theme 000 … Theme 011, and Harbor Night
        updater.openReady(updater.remote.fileUrl());
        QVERIFY(xdotool({u"key"_s, u"ctrl+f"_s}));
        QTRY_VERIFY(updater.list->findField()->hasFocus());
        QVERIFY(xdotool({u"type"_s, u"--delay"_s, u"20"_s, u"theme 01"_s}));
        QTRY_COMPARE(updater.list->tableViewModel().entries().size(), 2);
        QCOMPARE(updater.list->updateAllButton()->text(), u"Update 2 Shown"_s);
        keepWindowFrame(updater.wireframe->windowController()->window(), u"find"_s);
        QTest::qWait(QApplication::doubleClickInterval());
        QVERIFY(xdotool(clickAt(globalRect(updater.list->updateAllButton()).center())));
        QTRY_VERIFY_WITH_TIMEOUT(updater.installedCount() == 3 && updater.settled(), comparisonTimeout);
        QCOMPARE(updater.list->tableViewModel().entries().size(), 0); // both shown rows installed
        QVERIFY(xdotool({u"key"_s, u"ctrl+f"_s}));
        QTRY_VERIFY(updater.list->findField()->hasFocus());
        QVERIFY(xdotool({u"key"_s, u"Escape"_s})); // clears the find text: every row again
        QTRY_COMPARE(updater.list->tableViewModel().entries().size(), 11);
        QCOMPARE(updater.list->updateAllButton()->text(), u"Update All"_s);
    }

    void f5RefreshesAndARowsMenuCopiesItsName()
    {
        TrashSandbox trash;
        Updater updater(2);
        updater.openReady(updater.remote.fileUrl());
        bool reloaded = false;
        connect(updater.wireframe->windowController().get(), &CorvaneWindowController::themeEntriesShown, this,
                [&](bool loading) { reloaded |= loading; });
        QVERIFY(xdotool({u"key"_s, u"F5"_s}));
        QTRY_VERIFY_WITH_TIMEOUT(reloaded && updater.settled(), comparisonTimeout);

        QApplication::clipboard()->clear();
        const QString name = updater.list->tableViewModel().entries().at(0).name;
        // The menu runs its own loop: the keys that choose "Copy Name" (after Skip This Version and
        // Show in Folder) come from a timer inside it.
        QTimer::singleShot(400, this, [] { xdotool({u"key"_s, u"Down"_s, u"Down"_s, u"Down"_s, u"Return"_s}); });
        QVERIFY(xdotool({u"mousemove"_s, QString::number(globalRect(updater.cell(0)).center().x()),
                         QString::number(globalRect(updater.cell(0)).center().y()), u"click"_s, u"3"_s}));
        QTRY_COMPARE(QApplication::clipboard()->text(), name);
    }

    void theUpdaterOpensOverTheHostAndComesBackWhereItWasLeft()
    {
        QSettings().remove(CorvaneWindowController::settingsGroup); // no frame remembered from before
        QWidget host;
        host.setWindowTitle(u"Host"_s);
        host.setGeometry(60, 80, 760, 560);
        host.show();
        QVERIFY(QTest::qWaitForWindowActive(&host));
        Updater updater(2);
        updater.open(updater.remote.fileUrl());
        QWidget* window = updater.wireframe->windowController()->window();
        QTRY_VERIFY(QApplication::activeWindow() == window);
        const QPoint offCentre = window->frameGeometry().center() - host.frameGeometry().center();
        QVERIFY2(offCentre.manhattanLength() < 40, qPrintable(u"%1, %2 off the host's centre"_s.arg(offCentre.x()).arg(offCentre.y())));

        // Moved by the user through the window manager, closed, and shown again by the same host.
        QVERIFY(xdotool({u"windowmove"_s, QString::number(window->winId()), u"500"_s, u"300"_s}));
        QTRY_VERIFY(window->pos().x() >= 490 && window->pos().x() <= 510);
        const QPoint left = window->frameGeometry().topLeft();
        updater.wireframe->close();
        QTRY_VERIFY(!window->isVisible());
        QTest::qWait(200);
        updater.wireframe->show();
        QVERIFY(QTest::qWaitForWindowExposed(window));
        QTRY_COMPARE(window->frameGeometry().topLeft(), left);
        QTRY_VERIFY_WITH_TIMEOUT(updater.settled(), comparisonTimeout);
    }

private:
    QTemporaryDir m_settings;
};

QTEST_MAIN(DesktopWindowTest)
#include "DesktopWindowTest.moc"
