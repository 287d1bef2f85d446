// SPDX-License-Identifier: MIT
// The notice that offers to undo an install batch, on a real X server: pressed through the X server as
// a person would, it takes the batch back on disk and the list offers the themes again.
#include "Corvane/ui/LoadingViewController.h"
#include "Corvane/ui/ThemeTableModel.h"
#include "Corvane/ui/UndoNotice.h"

#include "DesktopScreen.h"
#include "ThemeFiles.h"
#include "TrashSandbox.h"

#include <QLabel>
#include <QSettings>
#include <QStandardPaths>

using namespace corvane;
using namespace corvane::test;
using namespace Qt::StringLiterals;

class UndoNoticeDesktopTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { startDesktopTest(m_settings); }

    void undoInTheNoticeTakesUpdateAllBack()
    {
        TrashSandbox trash;
        Updater updater(3); // Theme 000 … 002 new, Harbor Night 1.10 over the installed 1.2
        const QByteArray harborNight = readFile(updater.installed + u"/harbor-night.theme.json"_s);
        updater.openReady(updater.remote.fileUrl());
        UndoNotice* notice = updater.list->undoNotice();
        QVERIFY(!notice->isVisible());

        QVERIFY(xdotool(clickAt(globalRect(updater.list->updateAllButton()).center())));
        QTRY_VERIFY_WITH_TIMEOUT(updater.installedCount() == 4 && updater.settled(), comparisonTimeout);
        QVERIFY(notice->isVisible());
        QCOMPARE(notice->textLabel()->text(), u"Installed 4 themes"_s);
        QTRY_VERIFY(notice->undoButton()->isEnabled());
        QWidget* window = updater.wireframe->windowController()->window();
        keepFrame(screenAt(globalRect(window).adjusted(-4, -30, 4, 4)), u"undo-notice"_s);
        // The notice is on screen: its Undo shows as text, darker than the background around it.
        QVERIFY(darkestGrey(screenAt(globalRect(notice->undoButton()))) < 160);

        QTest::qWait(QApplication::doubleClickInterval());
        QVERIFY(xdotool(clickAt(globalRect(notice->undoButton()).center())));
        QTRY_VERIFY_WITH_TIMEOUT(!notice->isVisible() && updater.settled()
                                     && updater.list->tableViewModel().entries().size() == 4,
                                 comparisonTimeout);
        QCOMPARE(QDir(updater.installed).entryList(QDir::Files), QStringList{u"harbor-night.theme.json"_s});
        QCOMPARE(readFile(updater.installed + u"/harbor-night.theme.json"_s), harborNight);
        QCOMPARE(trash.trashedNames(), (QStringList{u"harbor-night.theme.json"_s, u"theme-000.theme.json"_s,
                                                    u"theme-001.theme.json"_s, u"theme-002.theme.json"_s}));
        keepFrame(screenAt(globalRect(window).adjusted(-4, -30, 4, 4)), u"after-undo"_s);
    }

    // Undoing two thousand themes takes a while: the overlay counts the files put back, and the window
    // paints throughout.
    void aLongUndoShowsItsProgress()
    {
        TrashSandbox trash;
        Updater updater(2000);
        updater.openReady(updater.remote.fileUrl());
        updater.list->updateAll();
        QTRY_VERIFY_WITH_TIMEOUT(updater.installedCount() == 2001 && updater.settled(), comparisonTimeout);
        UndoNotice* notice = updater.list->undoNotice();
        QTRY_VERIFY(notice->isVisible() && notice->undoButton()->isEnabled());

        auto message = updater.list->loadingViewController()->findChild<QLabel*>(u"messageLabel"_s);
        notice->undoButton()->click();
        QTRY_VERIFY_WITH_TIMEOUT(message->isVisible() && message->text().startsWith(u"Undoing "_s), comparisonTimeout);
        QVERIFY2(message->text().endsWith(u" of 2,001…"_s), qPrintable(message->text()));
        QWidget* window = updater.wireframe->windowController()->window();
        keepFrame(screenAt(globalRect(window).adjusted(-4, -30, 4, 4)), u"undo-progress"_s);
        QVERIFY(!updater.list->refreshButton()->isEnabled());
        QTRY_VERIFY_WITH_TIMEOUT(updater.settled() && updater.list->tableViewModel().entries().size() == 2001,
                                 comparisonTimeout);
        QCOMPARE(updater.installedCount(), 1);
    }

private:
    QTemporaryDir m_settings;
};

QTEST_MAIN(UndoNoticeDesktopTest)
#include "UndoNoticeDesktopTest.moc"
