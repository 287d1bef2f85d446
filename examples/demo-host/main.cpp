// SPDX-License-Identifier: MIT
// A small host application that keeps its themes current with Corvane.
#include "DemoWindow.h"

#include "Corvane/module/Translations.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QFileInfo>
#include <QLibraryInfo>
#include <QLocale>
#include <QSettings>
#include <QTimer>
#include <QTranslator>

#include <cstdio>

namespace {

QUrl location(const QString& argument)
{
    if (argument.contains(u"://"))
        return QUrl(argument);
    return QUrl::fromLocalFile(QFileInfo(argument).absoluteFilePath());
}

// The host installs its translators; Corvane's texts are looked up in them like the host's own.
void installTranslators(QApplication& application, const QString& language)
{
    const QLocale locale(language);
    // Counts and sizes in Corvane's texts are written as the default locale writes numbers.
    QLocale::setDefault(locale);
    // Corvane's catalogue, from where Corvane is installed (or was built).
    corvane::loadTranslations(locale);
    // The demo's own texts, installed after Corvane's: a host's translator may override any of Corvane's ids.
    const QStringList folders = {QCoreApplication::applicationDirPath() + QStringLiteral("/translations"),
                                 QStringLiteral(CORVANE_TRANSLATIONS_DIR)};
    auto translator = new QTranslator(&application);
    for (const QString& folder : folders) {
        if (translator->load(locale, QStringLiteral("corvane-demo"), QStringLiteral("_"), folder)) {
            QCoreApplication::installTranslator(translator);
            break;
        }
    }
    auto qtTranslator = new QTranslator(&application);
    if (qtTranslator->load(locale, QStringLiteral("qtbase"), QStringLiteral("_"),
                           QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QCoreApplication::installTranslator(qtTranslator);
}

} // namespace

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    QCoreApplication::setOrganizationName(QStringLiteral("Corvane"));
    QCoreApplication::setApplicationName(QStringLiteral("Corvane Demo"));

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("A host application that keeps its themes current with Corvane."));
    parser.addHelpOption();
    const QCommandLineOption remote(QStringLiteral("remote"), QStringLiteral("The theme repository."), QStringLiteral("URL"));
    const QCommandLineOption clone(QStringLiteral("clone"), QStringLiteral("Corvane's local clone."), QStringLiteral("DIR"));
    const QCommandLineOption installed(QStringLiteral("installed"), QStringLiteral("The installed themes."), QStringLiteral("DIR"));
    const QCommandLineOption language(QStringLiteral("lang"), QStringLiteral("Language of the texts, e.g. de."), QStringLiteral("CODE"));
    const QCommandLineOption settingsFile(QStringLiteral("settings"), QStringLiteral("Keep settings in this file."), QStringLiteral("FILE"));
    const QCommandLineOption screenshot(QStringLiteral("screenshot"),
                                        QStringLiteral("Render the window once the repository check has answered, write a PNG and exit."),
                                        QStringLiteral("FILE"));
    parser.addOptions({remote, clone, installed, language, settingsFile, screenshot});
    parser.process(application);
    if (!parser.isSet(remote) || !parser.isSet(clone) || !parser.isSet(installed)) {
        std::fputs("usage: corvane-demo --remote URL --clone DIR --installed DIR [--lang CODE] [--settings FILE] [--screenshot FILE]\n", stderr);
        return 2;
    }
    if (parser.isSet(language))
        installTranslators(application, parser.value(language));

    std::unique_ptr<QSettings> settings = parser.isSet(settingsFile)
        ? std::make_unique<QSettings>(parser.value(settingsFile), QSettings::IniFormat)
        : std::make_unique<QSettings>();

    DemoWindow window(corvane::Configuration(location(parser.value(remote)), location(parser.value(clone)),
                                             location(parser.value(installed))),
                      *settings);
    window.show();
    window.checkForThemeUpdates();

    if (parser.isSet(screenshot)) {
        const QString file = parser.value(screenshot);
        QObject::connect(&window, &DemoWindow::repositoryCheckFinished, &application, [&window, file] {
            QTimer::singleShot(100, &window, [&window, file] {
                const bool written = window.grab().save(file);
                std::fprintf(written ? stdout : stderr, "%s %s\n", written ? "wrote" : "could not write",
                             qPrintable(QDir::toNativeSeparators(file)));
                QCoreApplication::exit(written ? 0 : 1);
            });
        });
    }
    return application.exec();
}
