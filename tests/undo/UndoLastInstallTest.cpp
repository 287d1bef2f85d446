// SPDX-License-Identifier: MIT
#include "Corvane/differences/CopyCommand.h"
#include "Corvane/themes/FileManager.h"
#include "Corvane/undo/InstallRecord.h"
#include "Corvane/undo/UndoLastInstall.h"

#include "ThemeFiles.h"
#include "TrashSandbox.h"

#include <QDir>
#include <QFile>
#include <QSet>
#include <QTemporaryDir>
#include <QTest>

using namespace corvane;
using namespace corvane::test;

namespace {

// Themes to install from `source`, and an installed directory where Solar 1.0 and Nimbus 1.0 lie.
struct Scene {
    QTemporaryDir dir;
    const QString source = dir.filePath("source"), installed = dir.filePath("installed");

    Scene()
    {
        for (const QString name : {"Aurora", "Borealis", "Solar", "Nimbus"})
            writeTheme(source, name.toLower() + ".theme.json", name, "dark", {"Ann"}, "2.0.0");
        writeTheme(installed, "solar.theme.json", "Solar", "dark", {"Ann"}, "1.0.0");
        writeTheme(installed, "nimbus.theme.json", "Nimbus", "dark", {"Ann"}, "1.0.0");
    }

    // One batch, as the window or the tool makes it. A name marked "!" fails: the Trash refuses the
    // file it replaces.
    void install(const QStringList& names, const TrashSandbox& trash) const
    {
        const InstallRecord record(QUrl::fromLocalFile(installed));
        for (QString name : names) {
            const bool fails = name.startsWith('!');
            if (fails)
                writeFile(trash.dataHome() + "/Trash", "files", "");
            const QString file = name.remove('!') + ".theme.json";
            QCOMPARE(FileManager::shared()->copy(CopyCommand{source + '/' + file, installed + '/' + file}).has_value(), !fails);
            if (fails)
                QVERIFY(QFile::remove(trash.dataHome() + "/Trash/files"));
        }
    }

    // Every theme file of the installed directory with its bytes.
    QMap<QString, QByteArray> themes() const
    {
        QMap<QString, QByteArray> files;
        for (const QString& name : QDir(installed).entryList(QDir::Files))
            files.insert(name, readFile(installed + '/' + name));
        return files;
    }

    QString recordPath() const
    {
        const QDir folder(installed + "/.corvane-undo");
        const QStringList records = folder.entryList({"*.record"}, QDir::Files);
        return records.size() == 1 ? folder.filePath(records.first()) : QString();
    }
};

// The undo's changes as the tool prints them, file names only.
QStringList described(const UndoneInstall& undone)
{
    QStringList lines;
    for (const UndoneFile& file : undone)
        lines << (file.change == UndoneFile::Change::restored ? "restored " : "trashed ") + file.path.section('/', -1);
    return lines;
}

} // namespace

class UndoLastInstallTest : public QObject {
    Q_OBJECT

private slots:
    void undoesTheLastBatch_data()
    {
        QTest::addColumn<QStringList>("batches");
        QTest::addColumn<QStringList>("changes");
        QTest::addColumn<QString>("tamper");
        QTest::addColumn<QString>("refusal");
        QTest::newRow("new themes go to the Trash")
            << QStringList{"aurora borealis"} << QStringList{"trashed borealis.theme.json", "trashed aurora.theme.json"}
            << "" << "";
        QTest::newRow("an update brings the replaced version back")
            << QStringList{"aurora solar"} << QStringList{"trashed solar.theme.json", "restored solar.theme.json",
                                                           "trashed aurora.theme.json"}
            << "" << "";
        QTest::newRow("only the last batch")
            << QStringList{"aurora", "nimbus"}
            << QStringList{"trashed nimbus.theme.json", "restored nimbus.theme.json"} << "" << "";
        QTest::newRow("a batch that changed nothing keeps the one before")
            << QStringList{"aurora", "!solar"} << QStringList{"trashed aurora.theme.json"} << "" << "";
        QTest::newRow("a written file edited since")
            << QStringList{"aurora solar"} << QStringList{} << "edit aurora"
            << "'%1/aurora.theme.json' has changed since it was installed, so the install cannot be undone. Nothing was changed.";
        QTest::newRow("a written file removed since")
            << QStringList{"aurora solar"} << QStringList{} << "remove aurora"
            << "'%1/aurora.theme.json' has changed since it was installed";
        QTest::newRow("a replaced file's Trash entry is gone")
            << QStringList{"aurora solar"} << QStringList{} << "empty the Trash"
            << "The earlier version of '%1/solar.theme.json' is no longer in the Trash";
        QTest::newRow("killed between the Trash and the new file")
            << QStringList{"aurora solar"} << QStringList{} << "interrupt nimbus"
            << "The last install stopped while replacing '%1/nimbus.theme.json', so it cannot be undone.";
        QTest::newRow("a second undo")
            << QStringList{"aurora"} << QStringList{} << "undo" << "There is no install to undo in '%1'.";
        QTest::newRow("no batch yet") << QStringList{} << QStringList{} << "" << "There is no install to undo in '%1'.";
    }

    void undoesTheLastBatch()
    {
        QFETCH(QStringList, batches);
        QFETCH(QStringList, changes);
        QFETCH(QString, tamper);
        QFETCH(QString, refusal);
        TrashSandbox trash;
        Scene scene;
        QMap<QString, QByteArray> beforeLast = scene.themes();
        for (const QString& batch : batches) {
            if (!batch.startsWith('!')) // a failed batch is not the one undo takes back
                beforeLast = scene.themes();
            scene.install(batch.split(' '), trash);
        }

        if (tamper == "edit aurora")
            writeFile(scene.installed, "aurora.theme.json", readFile(scene.installed + "/aurora.theme.json") + ' ');
        else if (tamper == "remove aurora")
            QVERIFY(QFile::remove(scene.installed + "/aurora.theme.json"));
        else if (tamper == "empty the Trash")
            QVERIFY(QDir(trash.filesDirectory()).removeRecursively());
        else if (tamper == "interrupt nimbus") {
            QFile record(scene.recordPath());
            QVERIFY(record.open(QIODevice::Append));
            record.write("replacing nimbus.theme.json\n");
        } else if (tamper == "undo")
            QVERIFY(undoLastInstall(QUrl::fromLocalFile(scene.installed)).has_value());
        const QMap<QString, QByteArray> beforeUndo = scene.themes();
        const QStringList trashedBeforeUndo = trash.trashedNames();

        const auto undone = undoLastInstall(QUrl::fromLocalFile(scene.installed));
        if (!refusal.isEmpty()) {
            QVERIFY(!undone);
            QVERIFY2(undone.error().text.startsWith(refusal.arg(scene.installed)), qPrintable(undone.error().text));
            QCOMPARE(scene.themes(), beforeUndo);
            QCOMPARE(trash.trashedNames(), trashedBeforeUndo);
            return;
        }
        QVERIFY2(undone, qPrintable(undone.error().text));
        QCOMPARE(described(*undone), changes);
        QCOMPARE(scene.themes(), beforeLast);
        // The restored versions leave the Trash whole: no info file stays behind without its item.
        QCOMPARE(QDir(trash.infoDirectory()).entryList(QDir::Files).size(), trash.trashedNames().size());
        // What the batch wrote lies in the Trash.
        QSet<QByteArray> inTrash;
        for (const QString& name : trash.trashedNames())
            inTrash.insert(readFile(trash.filesDirectory() + '/' + name));
        for (const QString& change : changes) {
            if (change.startsWith("trashed "))
                QVERIFY2(inTrash.contains(readFile(scene.source + '/' + change.mid(8))), qPrintable(change));
        }
        QVERIFY(!undoLastInstall(QUrl::fromLocalFile(scene.installed)));
    }

    // Killed half-way through an undo: the retry goes on from where it stopped.
    void aStoppedUndoContinues()
    {
        TrashSandbox trash;
        Scene scene;
        const QMap<QString, QByteArray> original = scene.themes();
        scene.install({"solar", "nimbus"}, trash);
        QFile record(scene.recordPath());
        QVERIFY(record.open(QIODevice::ReadOnly));
        const QByteArray lines = record.readAll();
        record.close();
        // The last copy was undone by hand, as the undo would have, before the kill.
        QVERIFY(QFile::remove(scene.installed + "/nimbus.theme.json"));
        const QString trashedNimbus = trash.filesDirectory() + "/nimbus.theme.json";
        QVERIFY(QFile::rename(trashedNimbus, scene.installed + "/nimbus.theme.json"));
        QVERIFY(QFile::remove(trash.infoDirectory() + "/nimbus.theme.json.trashinfo"));
        QVERIFY(record.open(QIODevice::Append));
        record.write("undone 1\n");
        record.close();
        QVERIFY(lines.count("copied") == 2);

        const auto undone = undoLastInstall(QUrl::fromLocalFile(scene.installed));
        QVERIFY2(undone, qPrintable(undone.error().text));
        QCOMPARE(described(*undone), (QStringList{"trashed solar.theme.json", "restored solar.theme.json"}));
        QCOMPARE(scene.themes(), original);
    }
};

QTEST_GUILESS_MAIN(UndoLastInstallTest)
#include "UndoLastInstallTest.moc"
