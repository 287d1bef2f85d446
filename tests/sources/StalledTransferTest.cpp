// SPDX-License-Identifier: MIT
#include "Corvane/sources/GitLibrary.h"
#include "Corvane/sources/SynchronizedRepository.h"

#include "StallingServer.h"
#include "ThemeRepositoryScene.h"

#include <QRandomGenerator>
#include <QScopeGuard>
#include <QTest>

using namespace corvane;
using namespace corvane::test;
using namespace std::chrono_literals;

// Distinct limits, so each text shows which one ran out.
const TransferLimits shortLimits{600ms, 700ms, 800ms};
// A pack of 4 MB of noise takes the serving git a while to start on a busy machine: the freeze in the
// middle of it gets limits that only the freeze runs out.
const TransferLimits packLimits{600ms, 2500ms, 2500ms};

// The start of a smart http answer, as a server that froze after its first bytes leaves it.
const QByteArray frozenHttpAnswer = "HTTP/1.1 200 OK\r\n"
                                    "Content-Type: application/x-git-upload-pack-advertisement\r\n"
                                    "Content-Length: 100000\r\n\r\n"
                                    "001e# service=git-upload-pack\n0000";

class StalledTransferTest : public QObject {
    Q_OBJECT

private slots:
    void init() { GitLibrary::setTransferLimits(shortLimits); }
    void cleanup() { GitLibrary::setTransferLimits({}); }

    // Every transport gives up on a server that stops talking, at the stage where it stopped, with
    // the text naming it; a fetch into a good clone leaves that clone as it was, whatever the transport
    // (a few fetch rows stand for all).
    void givesUpOnAServerThatStopsTalking_data()
    {
        QTest::addColumn<QString>("url"); // PORT: the stalling server's port
        QTest::addColumn<int>("behaviour");
        QTest::addColumn<bool>("fetch");
        QTest::addColumn<QString>("text"); // URL: the url as shown
        QTest::addColumn<bool>("proxied"); // the stalling server is the http proxy

        const QString connect = "Could not connect to URL within 0.6 seconds.";
        const QString silent = "The server of URL accepted the connection but sent nothing for 0.7 seconds.";
        const QString frozen = "The transfer from URL made no progress for 0.8 seconds.";
        const QString frozenPack = "The transfer from URL made no progress for 2.5 seconds.";
        QTest::newRow("http, silent") << "http://127.0.0.1:PORT/themes.git" << int(Silent) << false << silent << false;
        QTest::newRow("https, silent") << "https://127.0.0.1:PORT/themes.git" << int(Silent) << false << silent << false;
        QTest::newRow("ssh, silent") << "ssh://git@127.0.0.1:PORT/themes.git" << int(Silent) << false << silent << false;
        QTest::newRow("git, silent") << "git://127.0.0.1:PORT/themes" << int(Silent) << false << silent << false;
        QTest::newRow("ssh, silent, fetch") << "ssh://git@127.0.0.1:PORT/themes.git" << int(Silent) << true << silent << false;
        QTest::newRow("http, unreachable") << "http://127.0.0.1:PORT/themes.git" << int(Unreachable) << false << connect << false;
        QTest::newRow("ssh, unreachable") << "ssh://git@127.0.0.1:PORT/themes.git" << int(Unreachable) << false << connect << false;
        QTest::newRow("git, unreachable") << "git://127.0.0.1:PORT/themes" << int(Unreachable) << false << connect << false;
        QTest::newRow("http, frozen after its first bytes") << "http://127.0.0.1:PORT/themes.git" << int(FrozenHttp) << false << frozen << false;
        QTest::newRow("git, frozen in the middle of the pack") << "git://127.0.0.1:PORT/themes" << int(FrozenPack) << false << frozenPack << false;
        QTest::newRow("http, frozen in the middle of the pack") << "http://127.0.0.1:PORT/themes" << int(FrozenHttpPack) << false << frozenPack << false;
        QTest::newRow("https, frozen in the middle of the pack") << "https://127.0.0.1:PORT/themes" << int(FrozenHttpsPack) << false << frozenPack << false;
        QTest::newRow("git, frozen in the middle of the pack, fetch") << "git://127.0.0.1:PORT/themes" << int(FrozenPack) << true << frozenPack << false;
        // Through a proxy, the stalling server is the proxy and the remote is real (SERVER: its port).
        QTest::newRow("http through a silent proxy") << "http://127.0.0.1:SERVER/themes.git" << int(Silent) << false << silent << true;
        QTest::newRow("http through an unreachable proxy") << "http://127.0.0.1:SERVER/themes.git" << int(Unreachable) << false << connect << true;
        QTest::newRow("http through a proxy frozen in the middle of the pack") << "http://127.0.0.1:SERVER/themes" << int(FrozenHttpPack) << false << frozenPack << true;
        QTest::newRow("http through a proxy frozen in the middle of the pack, fetch") << "http://127.0.0.1:SERVER/themes" << int(FrozenHttpPack) << true << frozenPack << true;
    }

    void givesUpOnAServerThatStopsTalking()
    {
        QFETCH(QString, url);
        QFETCH(int, behaviour);
        QFETCH(bool, fetch);
        QFETCH(QString, text);
        QFETCH(bool, proxied);
        const bool frozenPack = behaviour == FrozenPack || behaviour == FrozenHttpPack || behaviour == FrozenHttpsPack;
        ThemeRepositoryScene scene(behaviour == FrozenPack                  ? Served::git
                                   : behaviour == FrozenHttpPack || proxied ? Served::http
                                   : behaviour == FrozenHttpsPack ? Served::https
                                                                  : Served::file);
        if (fetch)
            QVERIFY(SynchronizedRepository(scene.cloneUrl(), scene.remoteUrl()).synchronize());
        if (frozenPack) {
            GitLibrary::setTransferLimits(packLimits);
            // Enough incompressible data that the pack is still on its way when the relay stops.
            QByteArray noise(4 << 20, Qt::Uninitialized);
            QRandomGenerator::global()->fillRange(reinterpret_cast<quint32*>(noise.data()), noise.size() / 4);
            writeFile(scene.remote.path() + "/Assets", "noise.bin", noise);
            scene.remote.commitAll("Noise");
        }
        const QString before = fetch ? scene.cloneHead() : QString();

        StallingServer server(behaviour == Silent        ? StallingServer::silent()
                              : behaviour == Unreachable ? StallingServer::unreachable()
                              : behaviour == FrozenHttp  ? StallingServer::greeting(frozenHttpAnswer)
                              : behaviour == FrozenPack  ? StallingServer::relay(scene.daemon->port(), 256 * 1024)
                              : behaviour == FrozenHttpPack ? StallingServer::relay(scene.http->port(), 256 * 1024)
                                                            : StallingServer::relay(scene.tls->port(), 256 * 1024));
        const QUrl remote(url.replace("PORT", QString::number(server.port())).replace("SERVER", QString::number(scene.http ? scene.http->port() : 0)));
        if (proxied)
            qputenv("http_proxy", "http://127.0.0.1:" + QByteArray::number(server.port()));
        const auto noProxy = qScopeGuard([] { qunsetenv("http_proxy"); });
        if (fetch)
            runGit(scene.clonePath(), {"remote", "set-url", "origin", remote.toString()});

        const auto synchronized = SynchronizedRepository(scene.cloneUrl(), remote).synchronize();
        QVERIFY(!synchronized);
        QUrl shown = remote; // messages name servers without user information
        shown.setUserInfo({});
        QCOMPARE(synchronized.error().errorDescription(), text.replace("URL", shown.toString()));
        if (frozenPack)
            QVERIFY(server.forwarded() >= 256 * 1024);
        if (fetch)
            QVERIFY(scene.cloneHead() == before && scene.cloneIsClean());
        else
            QCOMPARE(Repository::isValid(scene.cloneUrl()).value_or(true), false);
    }

private:
    enum Behaviour { Silent, Unreachable, FrozenHttp, FrozenPack, FrozenHttpPack, FrozenHttpsPack };
};

QTEST_GUILESS_MAIN(StalledTransferTest)
#include "StalledTransferTest.moc"
