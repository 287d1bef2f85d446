// SPDX-License-Identifier: MIT
#include "CommandLine.h"
#include "Commands.h"

#include "Corvane/module/Translations.h"
#include "Corvane/module/CorvaneWireframe.h"
#include "Corvane/ui/AlertDialog.h"
#include "Corvane/ui/CorvaneWindowController.h"
#include "Corvane/ui/ThemeListViewController.h"

#include <QApplication>
#include <QDir>
#include <QPainter>
#include <QPushButton>
#include <QSettings>
#include <QTemporaryDir>
#include <QTimer>
#include <QLocale>

#include <cstdlib>
#include <memory>

namespace corvane::cli {
namespace {

// The window with the alert over it, placed as a window manager centres a modal dialog on its parent.
QImage windowWithAlert(const QPixmap& window, const QPixmap& alert)
{
    constexpr int shadow = 18;
    const QSize size(std::max(window.width(), alert.width() + 2 * shadow),
                     std::max(window.height(), alert.height() + 2 * shadow));
    QImage canvas(size, QImage::Format_ARGB32_Premultiplied);
    canvas.fill(window.toImage().pixelColor(0, 0));
    QPainter painter(&canvas);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.drawPixmap(0, 0, window);
    const QPoint at((size.width() - alert.width()) / 2, std::max(shadow, (size.height() - alert.height()) / 3));
    for (int ring = shadow; ring > 0; ring -= 2) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(QColor(0, 0, 0, 5));
        painter.drawRoundedRect(QRect(at, alert.size()).adjusted(-ring / 2, -ring / 3, ring / 2, ring), 8, 8);
    }
    painter.drawPixmap(at, alert);
    painter.setPen(QColor(0, 0, 0, 60));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(QRect(at, alert.size()).adjusted(0, 0, -1, -1));
    return canvas;
}

// Waits for the first refresh to end and the overlays to settle, then writes the window (and the
// alert, when the refresh failed) to a PNG and leaves the application with the command's status.
class Screenshot : public QObject {
public:
    Screenshot(CorvaneWindowController& windowController, QString file)
        : m_windowController(windowController), m_file(std::move(file))
    {
        connect(&windowController, &CorvaneWindowController::themeEntriesShown, this,
                [this](bool loading, bool failed, const QString& failureDescription) {
                    if (loading || m_poll.isActive())
                        return;
                    if (failed)
                        m_failure = failureDescription;
                    m_poll.start(50);
                });
        connect(&m_poll, &QTimer::timeout, this, [this] { captureWhenSettled(); });
    }

private:
    void captureWhenSettled()
    {
        ThemeListViewController* list = m_windowController.listViewController();
        if (list && list->isAnimating())
            return;
        auto alert = qobject_cast<AlertDialog*>(QApplication::activeModalWidget());
        if (m_failure && !(alert && alert->isVisible()))
            return;
        m_poll.stop();

        const QPixmap window = m_windowController.window()->grab();
        const QImage image = alert ? windowWithAlert(window, alert->grab()) : window.toImage();
        const bool written = image.save(m_file, "PNG");
        if (!written)
            printError(QStringLiteral("corvane show: could not write %1").arg(QDir::toNativeSeparators(m_file)));
        int status = written ? done : failed;
        if (m_failure) {
            printError(*m_failure);
            status = failed;
        }
        if (alert) {
            // "Ignore": the answer that starts nothing more.
            alert->button(0)->click();
        }
        QTimer::singleShot(0, qApp, [status] { QCoreApplication::exit(status); });
    }

    CorvaneWindowController& m_windowController;
    QString m_file;
    QTimer m_poll;
    std::optional<QString> m_failure;
};

// Off screen, Qt notes every window operation the platform cannot do; stderr is for the command's own
// messages, so those notes are dropped.
void dropPlatformNotices(QtMsgType type, const QMessageLogContext& context, const QString& message)
{
    if (type == QtWarningMsg && message.startsWith(QLatin1StringView("This plugin does not support")))
        return;
    if (type == QtDebugMsg || type == QtInfoMsg)
        return;
    printError(qFormatLogMessage(type, context, message));
    if (type == QtFatalMsg)
        std::abort();
}

// The module's catalogue for a language, from where the library finds it (installed or built); its
// counts and sizes written as that language writes numbers.
bool installTranslation(const QString& language)
{
    const QLocale locale(language);
    if (!corvane::loadTranslations(locale))
        return false;
    QLocale::setDefault(locale);
    return true;
}

} // namespace

int runShow(const QStringList& arguments)
{
    CommandLine commandLine(
        QStringLiteral("show"), QStringLiteral("--remote URL --clone DIR --installed DIR [--branch NAME] [--lang CODE] [--settings FILE] "
                       "[--screenshot FILE]"),
        QStringLiteral("Opens the updater window in a minimal host: it synchronises the clone and lists every new "
                       "and updated theme, as a host application's updater does. With --screenshot, renders the "
                       "window off screen once the first refresh has finished, writes it as a PNG and exits; a "
                       "refresh that fails is captured with its alert and exits with status 1."));
    commandLine.addLocations(true, true, true);
    const QCommandLineOption screenshot(QStringLiteral("screenshot"),
                                        QStringLiteral("Write the window to FILE (PNG) and exit."),
                                        QStringLiteral("FILE"));
    commandLine.parser().addOption(screenshot);
    const QCommandLineOption language(QStringLiteral("lang"),
                                      QStringLiteral("Show the texts in this language (for example de)."),
                                      QStringLiteral("CODE"));
    commandLine.parser().addOption(language);
    const QCommandLineOption settingsFile(
        QStringLiteral("settings"),
        QStringLiteral("Keep the window's frame and skipped versions in this ini file, as a host's settings."),
        QStringLiteral("FILE"));
    commandLine.parser().addOption(settingsFile);
    if (auto status = commandLine.parse(arguments))
        return *status;
    // Off screen a window would wait for ever for a person who cannot see it.
    if (!commandLine.parser().isSet(screenshot) && QGuiApplication::platformName() == QLatin1String("offscreen")) {
        printError(QStringLiteral("corvane show: no display to open the window on (DISPLAY and WAYLAND_DISPLAY "
                                  "are unset or QT_QPA_PLATFORM is offscreen); use --screenshot FILE to render it "
                                  "to a PNG instead"));
        return failed;
    }
    if (commandLine.parser().isSet(language) && !installTranslation(commandLine.parser().value(language)))
        return commandLine.usageError(
            QStringLiteral("no translation for '%1'").arg(commandLine.parser().value(language)));
    qInstallMessageHandler(dropPlatformNotices);

    // A screenshot shows the window at its designed size, whatever a person did with it before.
    std::unique_ptr<QTemporaryDir> settings;
    if (commandLine.parser().isSet(screenshot)) {
        settings = std::make_unique<QTemporaryDir>();
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, settings->path());
    }

    std::unique_ptr<QSettings> hostSettings;
    if (commandLine.parser().isSet(settingsFile))
        hostSettings = std::make_unique<QSettings>(commandLine.parser().value(settingsFile), QSettings::IniFormat);
    const auto updater = CorvaneWireframe::create(commandLine.configuration(), nullptr, hostSettings.get());
    std::unique_ptr<Screenshot> capture;
    if (commandLine.parser().isSet(screenshot))
        capture = std::make_unique<Screenshot>(*updater->windowController(), commandLine.parser().value(screenshot));
    updater->show();
    return QApplication::exec();
}

} // namespace corvane::cli
