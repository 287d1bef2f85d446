// SPDX-License-Identifier: MIT
#include "UpdaterScene.h"

#include "ThemeFiles.h"

#include <QApplication>
#include <QDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace corvane::test {

Updater::Updater(int count)
    : remote(directory.filePath(u"remote/themes"_s))
    , clone(directory.filePath(u"clone"_s))
    , installed(directory.filePath(u"installed"_s))
{
    writeTheme(installed, u"harbor-night.theme.json"_s, u"Harbor Night"_s, u"dark"_s, {u"Ann"_s}, u"1.2"_s);
    writeTheme(remote.themesDirectory(), u"harbor-night.theme.json"_s, u"Harbor Night"_s, u"dark"_s, {u"Ann"_s},
               u"1.10"_s);
    for (int index = 0; index < count; ++index)
        writeTheme(remote.themesDirectory(), u"theme-%1.theme.json"_s.arg(index, 3, 10, QChar(u'0')),
                   u"Theme %1"_s.arg(index, 3, 10, QChar(u'0')), index % 2 ? u"dark"_s : u"light"_s,
                   {u"Author %1"_s.arg(index)}, u"1.0.%1"_s.arg(index));
    remote.commitAll(u"Themes"_s);
}

void Updater::create(const QUrl& remoteUrl, std::shared_ptr<ProvidesThemePreviews> previews)
{
    wireframe = CorvaneWireframe::create(
        Configuration(remoteUrl, QUrl::fromLocalFile(clone), QUrl::fromLocalFile(installed)));
    list = wireframe->windowController()->listViewController();
    if (previews)
        wireframe->setPreviewProvider(std::move(previews));
}

void Updater::open(const QUrl& remoteUrl, std::shared_ptr<ProvidesThemePreviews> previews)
{
    create(remoteUrl, std::move(previews));
    wireframe->show();
    QVERIFY(QTest::qWaitForWindowExposed(wireframe->windowController()->window()));
}

void Updater::openReady(const QUrl& remoteUrl)
{
    open(remoteUrl);
    QTRY_VERIFY_WITH_TIMEOUT(settled(), comparisonTimeout);
    QTest::qWait(QApplication::doubleClickInterval());
}

QStringList Updater::rows() const
{
    QStringList names;
    for (const ThemeEntry& entry : list->tableViewModel().entries())
        names << entry.name;
    return names;
}

int Updater::installedCount() const
{
    return int(QDir(installed).entryList({u"*.theme.json"_s}, QDir::Files).size());
}

} // namespace corvane::test
