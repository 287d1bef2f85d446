// The updater window as it is drawn, in a light and a dark palette: backgrounds follow the palette,
// text keeps readable contrast on what is really drawn beneath it, and the overlays cover the list.
// With CORVANE_SCREENSHOT_DIR set, each state is also written there as a PNG (docs/images).
#include "Corvane/module/TextError.h"
#include "Corvane/presentation/AlertDialog.h"
#include "Corvane/ui/CorvaneWindowController.h"
#include "Corvane/ui/LoadingViewController.h"
#include "Corvane/ui/ThemeCellView.h"
#include "Corvane/ui/ThemeListViewController.h"
#include "Corvane/ui/ThemeTableModel.h"
#include "Corvane/ui/ThemeTableView.h"

#include <QApplication>
#include <QDir>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QStyleFactory>
#include <QTest>
#include <QTimer>

using namespace corvane;

namespace {

QPalette darkPalette()
{
    QPalette palette;
    const QColor window(0x2b, 0x2d, 0x31), base(0x1f, 0x20, 0x23), text(0xe8, 0xe8, 0xea);
    palette.setColor(QPalette::Window, window);
    palette.setColor(QPalette::WindowText, text);
    palette.setColor(QPalette::Base, base);
    palette.setColor(QPalette::AlternateBase, window);
    palette.setColor(QPalette::Text, text);
    palette.setColor(QPalette::Button, QColor(0x3a, 0x3c, 0x41));
    palette.setColor(QPalette::ButtonText, text);
    palette.setColor(QPalette::Highlight, QColor(0x4d, 0x8c, 0xf0));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::Light, QColor(0x4a, 0x4c, 0x52));
    palette.setColor(QPalette::Midlight, QColor(0x40, 0x42, 0x47));
    palette.setColor(QPalette::Mid, QColor(0x30, 0x32, 0x36));
    palette.setColor(QPalette::Dark, QColor(0x18, 0x19, 0x1b));
    palette.setColor(QPalette::Shadow, Qt::black);
    palette.setColor(QPalette::PlaceholderText, QColor(0x9a, 0x9b, 0xa0));
    palette.setColor(QPalette::Disabled, QPalette::ButtonText, QColor(0x80, 0x81, 0x86));
    palette.setColor(QPalette::Disabled, QPalette::WindowText, QColor(0x80, 0x81, 0x86));
    palette.setColor(QPalette::Disabled, QPalette::Text, QColor(0x80, 0x81, 0x86));
    return palette;
}

CopyCommand copyOf(const QString& file)
{
    return CopyCommand{QUrl::fromLocalFile(QStringLiteral("/clone/Themes/") + file),
                       QUrl::fromLocalFile(QStringLiteral("/installed/") + file)};
}

QList<ThemeEntry> sampleRows()
{
    return {
        {QStringLiteral("Harbor Day"), QStringLiteral("Light"), QStringLiteral("Mara Lindqvist"), std::nullopt,
         QStringLiteral("2.1.0"), copyOf(QStringLiteral("harbor-day.theme.json"))},
        {QStringLiteral("Nordlys"), QStringLiteral("Dark"), QStringLiteral("Ingrid Haugen, Ola Brekke"), std::nullopt,
         QStringLiteral("3.0.1"), copyOf(QStringLiteral("nordlys.theme.json"))},
        {QStringLiteral("Ember"), QStringLiteral("Dark"), QStringLiteral("Tomás Ortega, Priya Natarajan"),
         QStringLiteral("1.3.0"), QStringLiteral("1.4.2"), copyOf(QStringLiteral("ember.theme.json"))},
        {QStringLiteral("Harbor Night"), QStringLiteral("Dark"), QStringLiteral("Mara Lindqvist"),
         QStringLiteral("1.2.0"), QStringLiteral("1.10.0"), copyOf(QStringLiteral("harbor-night.theme.json"))},
        {QStringLiteral("Sandstone"), QStringLiteral("Light"), QStringLiteral("Amal Haddad"), QStringLiteral("1.9.0"),
         QStringLiteral("1.10.0"), copyOf(QStringLiteral("sandstone.theme.json"))},
    };
}

double luminance(const QColor& colour)
{
    const auto channel = [](double c) { return c <= 0.03928 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4); };
    return 0.2126 * channel(colour.redF()) + 0.7152 * channel(colour.greenF()) + 0.0722 * channel(colour.blueF());
}

double contrast(const QColor& a, const QColor& b)
{
    const double la = luminance(a), lb = luminance(b);
    return (std::max(la, lb) + 0.05) / (std::min(la, lb) + 0.05);
}

// The label's text colour composed over the pixel really drawn at the label's corner.
double drawnContrast(const QImage& image, QWidget* window, QLabel* label)
{
    const QPoint corner = label->mapTo(window, QPoint(1, 1));
    const QColor beneath = image.pixelColor(corner);
    QColor text = label->palette().color(label->foregroundRole());
    const double alpha = text.alphaF();
    text = QColor::fromRgbF(float(text.redF() * alpha + beneath.redF() * (1 - alpha)),
                            float(text.greenF() * alpha + beneath.greenF() * (1 - alpha)),
                            float(text.blueF() * alpha + beneath.blueF() * (1 - alpha)));
    return contrast(text, beneath);
}

QImage withAlert(const QImage& window, const QImage& alert)
{
    QImage canvas = window;
    QPainter painter(&canvas);
    const QPoint at((canvas.width() - alert.width()) / 2, std::max(12, (canvas.height() - alert.height()) / 3));
    painter.fillRect(QRect(at, alert.size()).adjusted(-1, -1, 1, 1), QColor(0, 0, 0, 90));
    painter.drawImage(at, alert);
    return canvas;
}

void save(const QImage& image, const QString& name)
{
    const QString directory = qEnvironmentVariable("CORVANE_SCREENSHOT_DIR");
    if (!directory.isEmpty())
        QVERIFY(image.save(QDir(directory).filePath(name + QStringLiteral(".png"))));
}

} // namespace

class WindowLookTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase()
    {
        QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    }

    void looks_data()
    {
        QTest::addColumn<bool>("dark");
        QTest::newRow("light") << false;
        QTest::newRow("dark") << true;
    }

    void looks()
    {
        QFETCH(bool, dark);
        QApplication::setPalette(dark ? darkPalette() : QApplication::style()->standardPalette());
        const QString suffix = dark ? QStringLiteral("-dark") : QString();
        const QPalette palette = QApplication::palette();

        auto controller = CorvaneWindowController::fromForm();
        QWidget* window = controller->window();
        ThemeListViewController* list = controller->listViewController();
        window->show();
        const auto settle = [&] {
            QTRY_VERIFY(!list->isAnimating());
            QCoreApplication::processEvents();
        };

        // Loading: the overlay covers the whole list in the list's own background colour.
        controller->showThemeEntries(std::nullopt);
        settle();
        QImage image = window->grab().toImage();
        const QRect listArea = list->themeTableView()->geometry().translated(list->mapTo(window, QPoint()));
        QCOMPARE(image.pixelColor(listArea.topLeft() + QPoint(3, 3)), palette.color(QPalette::Base));
        QCOMPARE(image.pixelColor(listArea.bottomRight() - QPoint(3, 3)), palette.color(QPalette::Base));
        QVERIFY(list->loadingViewController()->isIndicatorRunning());
        save(image, QStringLiteral("updater-loading") + suffix);

        // Rows: every label reads clearly on what is drawn beneath it.
        controller->showThemeEntries(Result<QList<ThemeEntry>, AnyError>(sampleRows()));
        settle();
        image = window->grab().toImage();
        for (int row = 0; row < 5; ++row) {
            auto cell = qobject_cast<ThemeCellView*>(list->themeTableView()->cellForRow(row));
            QVERIFY(cell);
            const double name = drawnContrast(image, window, cell->themeNameLabel());
            const double authors = drawnContrast(image, window, cell->authorsLabel());
            QVERIFY2(name >= 7.0, qPrintable(QStringLiteral("name contrast %1").arg(name)));
            QVERIFY2(authors >= 3.0 && authors < name,
                     qPrintable(QStringLiteral("authors contrast %1 (name %2)").arg(authors).arg(name)));
        }
        save(image, QStringLiteral("updater-rows") + suffix);

        controller->showThemeEntries(std::nullopt);
        settle();
        controller->showThemeEntries(Result<QList<ThemeEntry>, AnyError>(QList<ThemeEntry>{}));
        settle();
        save(window->grab().toImage(), QStringLiteral("updater-all-updated") + suffix);

        // The fetch-failed alert over the emptied window.
        controller->showThemeEntries(std::nullopt);
        settle();
        bool captured = false;
        QTimer poll;
        connect(&poll, &QTimer::timeout, this, [&] {
            auto alert = qobject_cast<AlertDialog*>(QApplication::activeModalWidget());
            if (!alert || !alert->isVisible() || list->isAnimating())
                return;
            poll.stop();
            auto detail = qobject_cast<QLabel*>(alert->accessoryView());
            const QImage alertImage = alert->grab().toImage();
            const double detailContrast = drawnContrast(alertImage, alert, detail);
            captured = detailContrast >= 3.0;
            if (!captured)
                qWarning("detail contrast %f", detailContrast);
            save(withAlert(window->grab().toImage(), alertImage), QStringLiteral("updater-fetch-failed") + suffix);
            alert->button(0)->click();
        });
        poll.start(20);
        controller->showThemeEntries(Result<QList<ThemeEntry>, AnyError>(std::unexpected(AnyError(TextError{
            QStringLiteral("Computing theme differences failed: Remote theme fetching error: Repository error: failed to resolve "
                           "address for themes.example.org: Name or service not known")}))));
        QVERIFY(captured);
    }
};

QTEST_MAIN(WindowLookTest)
#include "WindowLookTest.moc"
