// SPDX-License-Identifier: MIT
// The updater window off screen: how it reuses its few cells, and how its buttons and overlays take each display
// state and are drawn, light and dark. With CORVANE_SCREENSHOT_DIR set, each state is saved there (docs/images).
#include "Corvane/module/TextError.h"
#include "Corvane/ui/AllUpdatedViewController.h"
#include "Corvane/ui/CorvaneWindowController.h"
#include "Corvane/ui/LoadingViewController.h"
#include "Corvane/ui/SecondaryText.h"
#include "Corvane/ui/ThemeListViewController.h"
#include "Corvane/ui/ThemeTableModel.h"
#include "Corvane/ui/ThemeTableView.h"
#include "Corvane/ui/VersionLabel.h"

#include "presentation/AlertAnswerer.h"

#include <QDir>
#include <QPainter>
#include <QScrollBar>
#include <QSettings>
#include <QStyleFactory>
#include <QTemporaryDir>

using namespace corvane;
using namespace corvane::test;
using namespace Qt::StringLiterals;
using Rows = Result<QList<ThemeEntry>, AnyError>;

namespace {

struct RecordingDelegate final : ThemeListViewControllerDelegate {
    QStringList log;
    void installThemes(const QList<CopyCommand>& commands) override { log << u"install %1"_s.arg(commands.size()); }
    void refreshThemes() override { log << u"refresh"_s; }
    void openThemeDirectory() override { log << u"open"_s; }
};

QPalette darkPalette()
{
    QPalette palette;
    const std::pair<QPalette::ColorRole, QRgb> colours[] = {
        {QPalette::Window, 0x2b2d31}, {QPalette::WindowText, 0xe8e8ea}, {QPalette::Base, 0x1f2023},
        {QPalette::Text, 0xe8e8ea}, {QPalette::Button, 0x3a3c41}, {QPalette::ButtonText, 0xe8e8ea},
        {QPalette::Highlight, 0x4d8cf0}};
    for (const auto& [role, rgb] : colours)
        palette.setColor(role, QColor(rgb));
    for (const auto role : {QPalette::ButtonText, QPalette::WindowText, QPalette::Text})
        palette.setColor(QPalette::Disabled, role, QColor(0x808186));
    return palette;
}

const QList<ThemeEntry> sampleRows = {
    {u"Harbor Day"_s, u"Light"_s, u"Mara Lindqvist"_s, std::nullopt, u"2.1.0"_s, {}},
    {u"Nordlys"_s, u"Dark"_s, u"Ingrid Haugen, Ola Brekke"_s, std::nullopt, u"3.0.1"_s, {}},
    {u"Ember"_s, u"Dark"_s, u"Tomás Ortega, Priya Natarajan"_s, u"1.3.0"_s, u"1.4.2"_s, {}},
    {u"Harbor Night"_s, u"Dark"_s, u"Mara Lindqvist"_s, u"1.2.0"_s, u"1.10.0"_s, {}},
    {u"Sandstone"_s, u"Light"_s, u"Amal Haddad"_s, u"1.9.0"_s, u"1.10.0"_s, {}}};

// The contrast of a label's text, composed over the pixel drawn at its corner, with that pixel.
double drawnContrast(const QImage& image, QWidget* window, QLabel* label)
{
    const QColor under = image.pixelColor(label->mapTo(window, QPoint(1, 1)));
    const QColor text = label->palette().color(label->foregroundRole());
    const auto luminance = [&](double alpha) { // of the text at this opacity over the pixel
        const auto channel = [&](double t, double u) {
            const double c = t * alpha + u * (1 - alpha);
            return c <= 0.03928 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
        };
        return 0.2126 * channel(text.redF(), under.redF()) + 0.7152 * channel(text.greenF(), under.greenF())
            + 0.0722 * channel(text.blueF(), under.blueF());
    };
    const double a = luminance(text.alphaF()), b = luminance(0);
    return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05);
}

void save(const QImage& image, const QString& name)
{
    const QString directory = qEnvironmentVariable("CORVANE_SCREENSHOT_DIR");
    if (!directory.isEmpty())
        QVERIFY(image.save(QDir(directory).filePath(name + ".png"_L1)));
}

} // namespace

class WindowLookTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QApplication::setStyle(QStyleFactory::create(u"Fusion"_s));
        // The window remembers its frame in the host's settings: here, not in the user's.
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, m_settings.path());
    }

    void scrolledInRowsReuseFewCellsEachConfiguredAnew()
    {
        QList<ThemeEntry> rows; // the sample rows over and over, numbered
        for (int row = 0; row < 1000; ++row)
            (rows << sampleRows[row % sampleRows.size()]).last().name += u" %1"_s.arg(row);
        open();
        settle(Rows(rows));
        ThemeTableView& table = *m_list->themeTableView();
        const int made = table.cellsMade();
        QVERIFY(made < 20);
        for (int step = 0; step < 40; ++step) {
            table.verticalScrollBar()->setValue(table.verticalScrollBar()->value() + table.rowHeight() * 3 / 2);
            QCoreApplication::processEvents();
        }
        QVERIFY(table.cellsMade() <= made + 1);
        const ThemeTableModel& model = m_list->tableViewModel();
        for (const int row : table.rowsWithCells()) {
            if (model.isHeader(row))
                continue;
            const ThemeEntry& shown = model.entries().at(model.entryIndex(row));
            auto cell = qobject_cast<ThemeCellView*>(table.cellForRow(row));
            const bool update = shown.installedVersion.has_value();
            QCOMPARE(cell->themeNameLabel()->text(), shown.name);
            QCOMPARE(cell->updateButton()->text(), update ? u"Update"_s : u"Install"_s);
            QCOMPARE(cell->versionLabel()->fromVersionLabel()->isVisible(), update);
            QCOMPARE(cell->versionLabel()->arrow()->isVisible(), update);
            if (update)
                QCOMPARE(cell->versionLabel()->fromVersionLabel()->text(), *shown.installedVersion);
            QCOMPARE(cell->versionLabel()->toVersionLabel()->text(), shown.remoteVersion);
        }
    }

    void eachState_data()
    {
        QTest::addColumn<bool>("dark");
        QTest::addColumn<int>("rows");           // -1 while loading, -2 for a failure
        QTest::addColumn<QStringList>("clicks"); // what pressing Update All, Refresh, Open Theme Folder asks
        QTest::addColumn<bool>("loadingShown");
        QTest::addColumn<bool>("allUpToDateShown");
        for (const bool dark : {false, true}) { // a row's name is its picture's
            const char* suffix = dark ? "-dark" : "";
            QTest::addRow("loading%s", suffix) << dark << -1 << QStringList{"open"} << true << false;
            QTest::addRow("all-updated%s", suffix) << dark << 0 << QStringList{"refresh", "open"} << false << true;
            QTest::addRow("rows%s", suffix)
                << dark << 5 << QStringList{"install 5", "refresh", "open"} << false << false;
            QTest::addRow("fetch-failed%s", suffix) << dark << -2 << QStringList{"refresh", "open"} << false << false;
        }
    }

    void eachState()
    {
        QFETCH(bool, dark);
        QFETCH(int, rows);
        QFETCH(bool, loadingShown);
        QApplication::setPalette(dark ? darkPalette() : QApplication::style()->standardPalette());
        open();
        QWidget* window = m_controller->window();
        LoadingViewController* loading = m_list->loadingViewController();
        const QString picture = "updater-"_L1 + QLatin1StringView(QTest::currentDataTag());
        AlertAnswerer alerts; // Ignore to the failure's alert, drawn over the emptied window
        alerts.onShown = [&](AlertDialog* alert) {
            QVERIFY(QTest::qWaitFor([&] { return !m_list->isAnimating(); }));
            QImage canvas = window->grab().toImage();
            const QImage drawn = alert->grab().toImage();
            QPainter painter(&canvas);
            const QPoint at((canvas.width() - drawn.width()) / 2, std::max(12, (canvas.height() - drawn.height()) / 3));
            painter.fillRect(QRect(at, drawn.size()).adjusted(-1, -1, 1, 1), QColor(0, 0, 0, 90));
            painter.drawImage(at, drawn);
            save(canvas, picture);
        };
        settle(Rows(sampleRows));
        settle(std::nullopt);
        m_controller->showThemeEntries(rows == -1 ? ThemeListState()
                                       : rows >= 0 ? Rows(sampleRows.first(rows))
                                                   : Rows(std::unexpected(AnyError(TextError{
                                                         u"Computing theme differences failed: Remote theme fetching "
                                                         "error: Repository error: failed to resolve address for "
                                                         "themes.example.org: Name or service not known"_s}))));
        QCOMPARE(alerts.seen().size(), rows == -2 ? 1 : 0);
        if (rows == 0) // the loading overlay stays beneath until the other has faded in
            QVERIFY(loading->isVisible() && loading->opacity() == 1.0);
        QTRY_VERIFY(!m_list->isAnimating());
        QCOMPARE(loading->isVisible() && loading->opacity() == 1.0, loadingShown);
        QCOMPARE(loading->isIndicatorRunning(), loadingShown);
        QTEST(m_list->allUpToDateViewController()->isVisible(), "allUpToDateShown");

        QCoreApplication::processEvents();
        const QImage image = window->grab().toImage();
        if (rows != -2)
            save(image, picture);
        const QRect list = m_list->themeTableView()->geometry().translated(m_list->mapTo(window, QPoint()));
        if (rows == -1) // the loading overlay covers the list in the list's own background
            for (const QPoint corner : {list.topLeft() + QPoint(3, 3), list.bottomRight() - QPoint(3, 3)})
                QCOMPARE(image.pixelColor(corner), QApplication::palette().color(QPalette::Base));
        for (int row = 0; row < rows; ++row) { // every row's text reads clearly on what is drawn beneath it
            const int tableRow = m_list->tableViewModel().rowOfEntry(row);
            auto cell = qobject_cast<ThemeCellView*>(m_list->themeTableView()->cellForRow(tableRow));
            const double name = drawnContrast(image, window, cell->themeNameLabel());
            const double authors = drawnContrast(image, window, cell->authorsLabel());
            QVERIFY2(name >= 7.0 && authors >= 3.0 && authors < name, qPrintable(u"%1, %2"_s.arg(name).arg(authors)));
        }
        for (auto button : {m_list->updateAllButton(), m_list->refreshButton(), m_list->openThemeDirectoryButton()})
            QTest::mouseClick(button, Qt::LeftButton);
        QTEST(m_delegate->log, "clicks");
    }

    void theCheckMarkStandsOutInEveryPalette_data()
    {
        QTest::addColumn<QRgb>("base");
        QTest::addColumn<QRgb>("text");
        QTest::addColumn<QRgb>("accent");
        QTest::addColumn<bool>("accentKept"); // already legible: drawn in the accent itself
        QTest::newRow("light, blue accent") << QRgb(0xffffff) << QRgb(0x000000) << QRgb(0x308cc6) << true;
        QTest::newRow("dark, deep blue accent") << QRgb(0x3d3d3d) << QRgb(0xeeeeee) << QRgb(0x12608a) << false;
        QTest::newRow("dark, accent the colour of the base") << QRgb(0x1f2023) << QRgb(0xe8e8ea) << QRgb(0x1f2023)
                                                             << false;
        QTest::newRow("dark, bright accent") << QRgb(0x1f2023) << QRgb(0xe8e8ea) << QRgb(0x4d8cf0) << true;
    }

    void theCheckMarkStandsOutInEveryPalette()
    {
        QFETCH(QRgb, base);
        QFETCH(QRgb, text);
        QFETCH(QRgb, accent);
        QPalette palette;
        palette.setColor(QPalette::Base, QColor(base));
        palette.setColor(QPalette::Text, QColor(text));
        palette.setColor(QPalette::Highlight, QColor(accent));
        const QColor mark = legibleAccentColour(palette);
        QVERIFY(contrastRatio(mark, QColor(base)) >= 3.0);
        QTEST(mark == QColor(accent), "accentKept");
    }

private:
    void open()
    {
        m_controller = CorvaneWindowController::fromForm();
        m_list = m_controller->listViewController();
        m_list->setDelegate(m_delegate = std::make_shared<RecordingDelegate>());
        m_controller->window()->show();
    }
    void settle(const ThemeListState& state)
    {
        m_controller->showThemeEntries(state);
        QTRY_VERIFY(!m_list->isAnimating());
    }

    QTemporaryDir m_settings;
    std::shared_ptr<CorvaneWindowController> m_controller;
    ThemeListViewController* m_list = nullptr;
    std::shared_ptr<RecordingDelegate> m_delegate;
};

QTEST_MAIN(WindowLookTest)
#include "WindowLookTest.moc"
