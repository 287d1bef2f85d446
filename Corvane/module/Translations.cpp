// SPDX-License-Identifier: MIT
#include "Corvane/module/Translations.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QPointer>
#include <QStringList>
#include <QTranslator>

#include <dlfcn.h>

namespace corvane {

namespace {

// The folder of the binary that holds this code: the shared library a host links, or the program
// itself when the code was linked statically.
QString codeDirectory()
{
    Dl_info info{};
    if (dladdr(reinterpret_cast<const void*>(&codeDirectory), &info) != 0 && info.dli_fname != nullptr) {
        const QString file = QString::fromLocal8Bit(info.dli_fname);
        // The dynamic linker names the main program only by argv[0], which may be relative.
        if (QFileInfo(file).isAbsolute())
            return QFileInfo(file).canonicalPath();
    }
    return QCoreApplication::applicationDirPath();
}

// Where the catalogues may be, best first. Installed ones lie at a fixed place relative to lib/, bin/
// and libexec/corvane/; a build tree keeps them in translations/ at its top, one or two folders above its binaries.
QStringList translationFolders()
{
    const QDir code(codeDirectory());
    QStringList folders = {code.filePath(QStringLiteral(CORVANE_LIBDIR_TO_TRANSLATIONS)),
                           code.filePath(QStringLiteral(CORVANE_BINDIR_TO_TRANSLATIONS)),
                           code.filePath(QStringLiteral(CORVANE_LIBEXECDIR_TO_TRANSLATIONS))};
    for (const QString& up : {QStringLiteral(".."), QStringLiteral("../..")}) {
        const QDir top(code.filePath(up));
        if (top.exists(QStringLiteral("CMakeCache.txt")))
            folders.append(top.filePath(QStringLiteral("translations")));
    }
    for (QString& folder : folders)
        folder = QDir::cleanPath(folder);
    folders.removeDuplicates();
    return folders;
}

QPointer<QTranslator>& installedTranslator()
{
    static QPointer<QTranslator> translator;
    return translator;
}

} // namespace

bool loadTranslations(const QLocale& locale)
{
    QCoreApplication* application = QCoreApplication::instance();
    if (application == nullptr)
        return false;
    if (QTranslator* previous = installedTranslator()) {
        QCoreApplication::removeTranslator(previous);
        delete previous;
    }
    auto translator = new QTranslator(application);
    for (const QString& folder : translationFolders()) {
        if (translator->load(locale, QStringLiteral("corvane"), QStringLiteral("_"), folder)) {
            QCoreApplication::installTranslator(translator);
            installedTranslator() = translator;
            return true;
        }
    }
    delete translator;
    return false;
}

} // namespace corvane
