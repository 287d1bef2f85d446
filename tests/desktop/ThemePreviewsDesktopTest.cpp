// SPDX-License-Identifier: MIT
// Previews and the progress of a first clone on a real X server (run through on-desktop.sh): what
// reaches the screen is read back from the root window.
#include "Corvane/ui/LoadingViewController.h"
#include "Corvane/ui/ProvidesThemePreviews.h"
#include "Corvane/ui/ThemePreviewView.h"
#include "Corvane/ui/ThemeTableModel.h"

#include "DesktopScreen.h"
#include "GitDaemon.h"
#include "ScriptedProxy.h"

#include <QLabel>
#include <QProgressBar>
#include <QSettings>

using namespace corvane;
using namespace corvane::test;
using namespace Qt::StringLiterals;

namespace {

// Each theme in a flat colour of its own, drawn from its file name.
class FlatColours final : public ProvidesThemePreviews {
public:
    QImage previewForThemeFile(const QString& path, QSize size) override
    {
        QImage image(size, QImage::Format_RGB32);
        image.fill(colourOf(path));
        return image;
    }
    static QColor colourOf(const QString& path)
    {
        const QString name = path.section(u'/', -1);
        return QColor::fromHsv(int(qHash(name) % 360), 200, 200);
    }
};

} // namespace

class ThemePreviewsDesktopTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { startDesktopTest(m_settings); }

    void rowsOnScreenShowTheirOwnPreviews()
    {
        Updater updater(40);
        updater.open(updater.remote.fileUrl(), std::make_shared<FlatColours>());
        QTRY_VERIFY_WITH_TIMEOUT(updater.settled(), comparisonTimeout);

        QList<int> rows; // the themes on screen, by their place among the themes (headers have no preview)
        for (const int row : updater.list->themeTableView()->rowsWithCells()) {
            if (const int entry = updater.list->tableViewModel().entryIndex(row); entry >= 0)
                rows << entry;
        }
        QVERIFY(rows.size() > 4);
        for (const int row : rows)
            QTRY_VERIFY(updater.cell(row)->previewView()->hasPreview());
        QTest::qWait(100); // the last pictures' paint reaches the X server
        keepWindowFrame(updater.wireframe->windowController()->window(), u"previews"_s);
        const QList<ThemeEntry>& entries = updater.list->tableViewModel().entries();
        for (const int row : rows) {
            ThemePreviewView* preview = updater.cell(row)->previewView();
            if (!updater.list->themeTableView()->viewport()->rect().contains(
                    preview->mapTo(updater.list->themeTableView()->viewport(), preview->rect().bottomRight())))
                continue; // the row at the bottom edge is partly hidden
            const QImage shown = screenAt(globalRect(preview).adjusted(4, 4, -4, -4));
            const QColor wanted = FlatColours::colourOf(entries.at(row).copyCommand.sourcePath);
            QVERIFY2(shareNear(shown, wanted) > 0.9,
                     qPrintable(u"row %1 does not show its preview (%2)"_s.arg(row).arg(wanted.name())));
        }
    }

    void aSlowFirstCloneFillsTheOverlaysBar()
    {
        Updater updater(1500);
        GitDaemon daemon(updater.directory.filePath(u"remote"_s));
        QVERIFY(daemon.isRunning());
        ScriptedProxy proxy(u"throttling-proxy.py"_s, {QString::number(daemon.port()), u"60000"_s}); // 60 KB a second
        QVERIFY(proxy.isRunning());

        updater.open(QUrl(u"git://127.0.0.1:%1/themes"_s.arg(proxy.port())));
        LoadingViewController* loading = updater.list->loadingViewController();
        QProgressBar* bar = loading->loadingIndicator();
        const QColor accent = bar->palette().color(QPalette::Highlight);
        // How much of the bar is filled on the screen, each time the text tells of objects received.
        QList<double> filled;
        QStringList texts;
        bool kept = false;
        while (!updater.settled()) {
            const QString text = loading->message();
            if (texts.isEmpty() || texts.constLast() != text)
                texts << text;
            if (text.startsWith(u"Receiving objects: "_s) && bar->maximum() > 0) {
                const double share = shareNear(screenAt(globalRect(bar)), accent);
                filled << share;
                if (!kept && bar->value() > bar->maximum() / 3) {
                    keepWindowFrame(updater.wireframe->windowController()->window(), u"clone-progress"_s);
                    kept = true;
                }
            }
            QTest::qWait(100);
        }
        QVERIFY2(texts.size() >= 3, qPrintable(texts.join(u" | "_s)));
        QStringList shares;
        for (const double share : std::as_const(filled))
            shares << QString::number(share, 'f', 2);
        // Determinate and moving: partly filled frames that grow, never a busy bar's bouncing chunk.
        const auto partly = std::count_if(filled.cbegin(), filled.cend(), [](double share) { return share > 0.05 && share < 0.95; });
        QVERIFY2(partly >= 3, qPrintable(shares.join(u' ')));
        QVERIFY2(std::is_sorted(filled.cbegin(), filled.cend(), [](double a, double b) { return a < b - 0.05; }),
                 qPrintable(shares.join(u' ')));
        QVERIFY2(filled.constLast() - filled.constFirst() > 0.3, qPrintable(shares.join(u' ')));
    }

private:
    QTemporaryDir m_settings;
};

QTEST_MAIN(ThemePreviewsDesktopTest)
#include "ThemePreviewsDesktopTest.moc"
