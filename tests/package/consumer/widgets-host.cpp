// SPDX-License-Identifier: MIT
// A host in miniature that opens the updater from the installed package: over its own window, with
// its frame kept in the host's settings, telling the host through signals what it installed and when
// it closed.
#include <Corvane/module/CorvaneModule.h>

#include <QApplication>
#include <QFileInfo>
#include <QMainWindow>
#include <QSettings>
#include <QTimer>

#include <cstdio>

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    if (argc != 5) {
        std::fputs("usage: widgets-host REMOTE CLONE INSTALLED SETTINGS\n", stderr);
        return 2;
    }
    const auto url = [&](int index) {
        return QUrl::fromLocalFile(QFileInfo(QString::fromLocal8Bit(argv[index])).absoluteFilePath());
    };
    QMainWindow host;
    host.resize(800, 600);
    host.show();
    QSettings settings(QString::fromLocal8Bit(argv[4]), QSettings::IniFormat);
    const auto updater = corvane::CorvaneModule(corvane::Configuration(url(1), url(2), url(3))).corvane(&host, &settings);

    bool closed = false;
    QObject::connect(updater.get(), &corvane::UpdatesThemes::closed, &host, [&] {
        closed = true;
        QCoreApplication::quit();
    });
    QObject::connect(updater.get(), &corvane::UpdatesThemes::themesInstalled, &host,
                     [](const QStringList& files) { std::printf("installed %lld\n", qlonglong(files.size())); });
    updater->show();
    QTimer::singleShot(500, &host, [&] { updater->close(); });
    QTimer::singleShot(30000, &host, [] { QCoreApplication::exit(1); });
    const int status = application.exec();
    settings.sync();
    // The frame went into the settings the host handed in.
    if (status != 0 || !closed || updater->isVisible() || settings.childGroups().isEmpty())
        return 1;
    return 0;
}
