// SPDX-License-Identifier: MIT
// A host in miniature that links the core alone: checks a theme repository with the installed package,
// answered while its context lives; a cancelled check never answers.
#include <Corvane/Version/Version.h>
#include <Corvane/corvane_version.h>
#include <Corvane/differences/CopyCommand.h>
#include <Corvane/module/CorvaneModule.h>
#include <Corvane/module/CorvaneVersion.h>
#include <Corvane/module/Translations.h>
#include <Corvane/themes/FileManager.h>

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>

#include <cstdio>

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    if (argc != 4) {
        std::fputs("usage: core-host REMOTE CLONE INSTALLED\n", stderr);
        return 2;
    }
    const auto version = corvane::Version::fromString(QStringLiteral("1.10"));
    if (!version || version->toString() != QStringLiteral("1.10.0") || CorvaneVersionNumber != 1.0)
        return 1;
    static_assert(CORVANE_VERSION_MAJOR >= 1 && CORVANE_VERSION_MINOR >= 0 && CORVANE_VERSION_PATCH >= 0);
    if (QString::fromLatin1(CORVANE_VERSION)
        != QStringLiteral("%1.%2.%3").arg(CORVANE_VERSION_MAJOR).arg(CORVANE_VERSION_MINOR).arg(CORVANE_VERSION_PATCH))
        return 1;

    // Corvane's German catalogue is found where the package installed it, relative to the library.
    if (!corvane::loadTranslations(QLocale(QStringLiteral("de_DE"))) || qtTrId("corvane.style.dark") != QStringLiteral("Dunkel"))
        return 1;
    corvane::loadTranslations(QLocale::c());

    const corvane::Configuration configuration(QUrl::fromLocalFile(QFileInfo(QString::fromLocal8Bit(argv[1])).absoluteFilePath()),
                                               QUrl::fromLocalFile(QFileInfo(QString::fromLocal8Bit(argv[2])).absoluteFilePath()),
                                               QUrl::fromLocalFile(QFileInfo(QString::fromLocal8Bit(argv[3])).absoluteFilePath()));
    if (!corvane::FileManager::shared()->createDirectoryIfNeeded(configuration.installedThemeDirectory()))
        return 1;
    // What a host needs to copy a file as the module does.
    const corvane::CopyCommand copy{QString::fromLocal8Bit(argv[0]), configuration.installedThemeDirectory().toLocalFile()
                                                                         + QStringLiteral("/consumer.copy")};
    if (!corvane::FileManager::shared()->copy(copy) || !QFileInfo::exists(copy.destinationPath))
        return 1;
    QFile::remove(copy.destinationPath);

    const corvane::CorvaneModule module(configuration);
    bool cancelledAnswered = false;
    corvane::RepositoryCheckHandle cancelled = module.hasUpdates(
        std::nullopt, &application, [&](const corvane::ThemeRepositoryStatus&) { cancelledAnswered = true; });
    cancelled.cancel();
    int exitCode = 1;
    const corvane::RepositoryCheckHandle check = module.hasUpdates(std::nullopt, &application,
                                                                   [&](const corvane::ThemeRepositoryStatus& status) {
        if (const auto* update = std::get_if<corvane::UpdateAvailable>(&status)) {
            std::printf("update-available %s\n", qPrintable(update->commit));
            exitCode = update->commit.size() == 40 ? 0 : 1;
        } else if (const auto* failure = std::get_if<corvane::RepositoryCheckFailure>(&status)) {
            std::fprintf(stderr, "%s\n", qPrintable(failure->error.errorDescription()));
        }
        QCoreApplication::quit();
    });
    application.exec();
    if (cancelledAnswered || !cancelled.isCancelled() || !check.isAnswered())
        return 1;
    return exitCode;
}
