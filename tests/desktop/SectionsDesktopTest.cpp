// SPDX-License-Identifier: MIT
// The list's sections and skipped versions on a real X server (run through on-desktop.sh): the headers
// reach the screen with their counts, and the row menu and the Show Skipped toggle are worked with
// xdotool's clicks and keys, as a person would.
#include "Corvane/presentation/SkippedVersions.h"
#include "Corvane/ui/ThemeSectionHeaderView.h"
#include "Corvane/ui/ThemeTableModel.h"

#include "DesktopScreen.h"
#include "TrashSandbox.h"

#include <QCheckBox>
#include <QLabel>
#include <QSettings>
#include <QStandardPaths>
#include <QTimer>

using namespace corvane;
using namespace corvane::test;
using namespace Qt::StringLiterals;

class SectionsDesktopTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { startDesktopTest(m_settings); }

    void headersCountAndASkippedVersionLeavesUntilShown()
    {
        TrashSandbox trash;
        Updater updater(2); // new: Theme 000, Theme 001; update: Harbor Night
        updater.openReady(updater.remote.fileUrl());
        ThemeTableView* table = updater.list->themeTableView();
        QWidget* window = updater.wireframe->windowController()->window();

        const auto headerAt = [&](int row) { return qobject_cast<ThemeSectionHeaderView*>(table->cellForRow(row)); };
        QVERIFY(headerAt(0) && headerAt(3));
        QCOMPARE(headerAt(0)->titleLabel()->text(), u"New (2)"_s);
        QCOMPARE(headerAt(3)->titleLabel()->text(), u"Updates (1)"_s);
        for (int row : {0, 3}) { // the titles are drawn, not only set
            const QImage title = screenAt(globalRect(headerAt(row)->titleLabel()));
            QVERIFY2(pixelsDarkerThan(title, 140) > 20, qPrintable(headerAt(row)->titleLabel()->text()));
        }
        QVERIFY(updater.list->summaryLabel()->isVisible());
        QCOMPARE(updater.list->summaryLabel()->text(), u"3 themes to install or update · checked just now"_s);
        keepFrame(screenAt(globalRect(window)), u"sections"_s);

        // The menu runs its own loop: the keys that choose its first entry come from a timer inside it.
        const auto chooseFirstMenuEntryOf = [&](int entry) {
            QTimer::singleShot(400, this, [] { xdotool({u"key"_s, u"Down"_s, u"Return"_s}); });
            const QPoint at = globalRect(updater.cell(entry)->themeNameLabel()).center();
            return xdotool({u"mousemove"_s, QString::number(at.x()), QString::number(at.y()), u"click"_s, u"3"_s});
        };
        QVERIFY(chooseFirstMenuEntryOf(0)); // Skip This Version, on Theme 000
        QTRY_COMPARE(updater.rows(), (QStringList{u"Theme 001"_s, u"Harbor Night"_s}));
        QTRY_COMPARE(headerAt(0)->titleLabel()->text(), u"New (1)"_s);
        QCOMPARE(updater.list->summaryLabel()->text(), u"2 themes to install or update · checked just now"_s);
        QSettings settings;
        QCOMPARE(SkippedVersions::load(settings).size(), 1);

        QCheckBox* showSkipped = updater.list->showSkippedToggle();
        QTRY_VERIFY(showSkipped->isVisible());
        QVERIFY(xdotool(clickAt(globalRect(showSkipped).center())));
        QTRY_COMPARE(updater.rows().size(), 3);
        QCOMPARE(headerAt(0)->titleLabel()->text(), u"New (2)"_s);
        QTRY_VERIFY(updater.cell(0) && updater.cell(0)->isSkipped());
        QCOMPARE(updater.cell(0)->authorsLabel()->text(), u"Skipped · Author 0"_s);
        QTest::qWait(100);
        keepFrame(screenAt(globalRect(window)), u"skipped-shown"_s);

        QVERIFY(chooseFirstMenuEntryOf(0)); // Stop Skipping This Version
        QTRY_VERIFY(SkippedVersions::load(settings).isEmpty());
        QTRY_VERIFY(!updater.cell(0)->isSkipped());
    }

private:
    QTemporaryDir m_settings; // where the window keeps its frame and skips, not in the user's settings
};

QTEST_MAIN(SectionsDesktopTest)
#include "SectionsDesktopTest.moc"
