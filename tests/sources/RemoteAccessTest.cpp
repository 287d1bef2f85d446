// SPDX-License-Identifier: MIT
#include "Corvane/sources/HttpProxyLookup.h"
#include "Corvane/sources/SynchronizedRepository.h"

#include "ScriptedProxy.h"
#include "SshServer.h"
#include "StallingServer.h"
#include "ThemeRepositoryScene.h"

#include <QDirIterator>
#include <QProcess>
#include <QScopeGuard>
#include <QTest>

using namespace corvane;
using namespace corvane::test;

namespace {

const QString user = QStringLiteral("grace"), password = QStringLiteral("s3cret pass");

// The files of the clone's git directory (configuration, FETCH_HEAD, logs...) that hold text.
QStringList gitFilesHolding(const ThemeRepositoryScene& scene, const QByteArray& text)
{
    QStringList holding;
    QDirIterator files(scene.clonePath() + "/.git", QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QString path = files.next();
        if (readFile(path).contains(text))
            holding << path;
    }
    return holding;
}

// Synchronises and lets the clone go at once; the failure's text, or nothing.
std::optional<QString> failureOf(const SynchronizedRepository& synchronizedRepository)
{
    const auto synchronized = synchronizedRepository.synchronize();
    if (synchronized)
        return std::nullopt;
    return synchronized.error().errorDescription();
}

} // namespace

class RemoteAccessTest : public QObject {
    Q_OBJECT

private slots:
    void cleanup()
    {
        for (const char* name : {"http_proxy", "https_proxy", "no_proxy", "HTTP_PROXY", "HTTPS_PROXY", "NO_PROXY"})
            qunsetenv(name);
    }

    // A private repository: the user and password come from the URL or from the host's provider, and
    // neither is ever written into the clone.
    void authenticatesWithoutStoringSecrets_data()
    {
        QTest::addColumn<QString>("way");          // http, https, or http through a proxy
        QTest::addColumn<QString>("inUrl");        // user information of the configured URL
        QTest::addColumn<QStringList>("answers");  // the provider's answers, in order: a password, or "-" for none
        QTest::addColumn<bool>("succeeds");
        QTest::addColumn<int>("asked");            // the provider's last attempt on the first transfer (0: never asked)
        // https and the proxy's way of its own bring the server's questions differently; what the provider
        // makes of them is the same, so the provider's cases run over plain http only.
        const auto add = [](const char* name, const QString& inUrl, const QStringList& answers, bool succeeds, int asked,
                            const QStringList& ways) {
            for (const QString& way : ways)
                QTest::addRow("%s over %s", name, qPrintable(way)) << way << inUrl << answers << succeeds << asked;
        };
        const QStringList every{"http", "https", "a proxy"};
        add("password in the URL", "grace:s3cret%20pass", {}, true, 0, every);
        add("provider", "", {password}, true, 1, {"http"});
        add("only a user in the URL, provider", "grace", {password}, true, 1, {"http"});
        add("refused once, then right", "", {"wrong", password}, true, 2, every);
        add("wrong password in the URL, provider", "grace:wrong", {password}, true, 1, {"http"});
        add("always refused", "", {"a", "b", "c", "d"}, false, 3, every);
        add("provider gives nothing", "", {"-"}, false, 1, {"http"});
        add("no credentials", "", {}, false, 0, every);
    }

    void authenticatesWithoutStoringSecrets()
    {
        QFETCH(QString, way);
        QFETCH(QString, inUrl);
        QFETCH(QStringList, answers);
        QFETCH(bool, succeeds);
        QFETCH(int, asked);
        ThemeRepositoryScene scene(way == "https" ? Served::https : Served::http, user, password);
        std::optional<ScriptedProxy> proxy;
        if (way == "a proxy") {
            proxy.emplace("logging-proxy.py");
            qputenv("http_proxy", proxy->url().toLatin1());
        }
        QVERIFY(!scene.tls || scene.tls->isRunning());
        QUrl url = scene.remoteUrl();
        url.setUserInfo(inUrl, QUrl::TolerantMode);

        QList<CredentialRequest> requests;
        RemoteAccess access;
        if (!answers.isEmpty()) {
            access.credentials = [&](const CredentialRequest& request) -> std::optional<Credentials> {
                requests << request;
                // Every transfer (the clone, each fetch) asks afresh.
                const QString answer = answers.value(request.attempt - 1, QStringLiteral("-"));
                if (answer == "-")
                    return std::nullopt;
                return UserPassword{request.userName.isEmpty() ? user : request.userName, answer};
            };
        }
        const SynchronizedRepository synchronizedRepository(scene.cloneUrl(), url, QStringLiteral("master"), access);
        std::optional<QString> failure = failureOf(synchronizedRepository);
        QVERIFY2(!failure == succeeds, qPrintable(failure.value_or("")));
        int lastAttempt = 0;
        for (const CredentialRequest& request : std::as_const(requests)) {
            if (request.attempt == 1 && lastAttempt > 0)
                break;
            QCOMPARE(request.attempt, ++lastAttempt);
            QCOMPARE(request.url, scene.remoteUrl()); // never the secret of the URL
            QVERIFY(request.userPasswordAllowed && !request.sshAllowed);
        }
        QCOMPARE(lastAttempt, asked);
        if (proxy)
            QVERIFY(!proxy->lines().isEmpty());
        if (failure) {
            QVERIFY(!failure->contains("s3cret"));
            return;
        }
        // The fetch of an existing clone authenticates the same way.
        scene.commitTheme("Dawn");
        requests.clear();
        failure = failureOf(synchronizedRepository);
        QVERIFY2(!failure, qPrintable(failure.value_or("")));
        QCOMPARE(scene.cloneHead(), scene.remote.headCommit());
        // (a user name that is not hexadecimal: a commit id could hold it by chance)
        for (const QByteArray secret : {"s3cret", "wrong", "grace"})
            QVERIFY2(gitFilesHolding(scene, secret).isEmpty(), qPrintable(gitFilesHolding(scene, secret).join(' ')));
        QCOMPARE(runGit(scene.clonePath(), {"config", "remote.origin.url"}), scene.remoteUrl().toString());
    }

    // ssh with a key or the agent, the user named in the URL or by the provider; the host key goes to the
    // host's check, which can only refuse, and then to the user's known_hosts, as ssh checks it.
    void authenticatesOverSsh_data()
    {
        QTest::addColumn<QString>("answer"); // "key", "stranger" (a key the server does not know), "agent"
        QTest::addColumn<QString>("hostCheck"); // "accepts", "refuses", or "none" (the host sets no check)
        QTest::addColumn<bool>("knownHost");    // the server's key is in the user's known_hosts
        QTest::addColumn<QString>("failure");   // empty: succeeds
        QTest::newRow("the provider's key") << "key" << "accepts" << true << "";
        QTest::newRow("the provider's key, no host check") << "key" << "none" << true << "";
        QTest::newRow("the ssh agent") << "agent" << "accepts" << true << "";
        QTest::newRow("a key the server does not know") << "stranger" << "accepts" << true << "authentication";
        QTest::newRow("the host key refused by the host")
            << "key" << "refuses" << true << "The certificate of 127.0.0.1 was refused by the application.";
        QTest::newRow("a host the user never met, accepted by the host")
            << "key" << "accepts" << false << "invalid or unknown remote ssh hostkey";
    }

    void authenticatesOverSsh()
    {
        QFETCH(QString, answer);
        QFETCH(QString, hostCheck);
        QFETCH(bool, knownHost);
        QFETCH(QString, failure);
        SshServer server;
        QVERIFY2(server.isRunning(), qPrintable(server.failure()));
        ThemeRepositoryScene scene;
        // A home of the test's own, whose known_hosts names the server or not.
        const QByteArray home = qgetenv("HOME");
        qputenv("HOME", scene.root.path().toLocal8Bit());
        auto restoreHome = qScopeGuard([&] { qputenv("HOME", home); });
        if (knownHost)
            writeFile(scene.root.filePath(".ssh"), "known_hosts", server.knownHostsLine());
        QProcess agent;
        if (answer == "agent") {
            const QString socket = scene.root.filePath("agent.socket");
            agent.start("ssh-agent", {"-D", "-a", socket});
            QTRY_VERIFY(QFileInfo::exists(socket));
            qputenv("SSH_AUTH_SOCK", socket.toLocal8Bit());
            QProcess add;
            add.start("ssh-add", {"-q", server.clientKey()});
            QVERIFY(add.waitForFinished() && add.exitCode() == 0);
        }
        auto stopAgent = qScopeGuard([&] {
            qunsetenv("SSH_AUTH_SOCK");
            agent.kill();
            agent.waitForFinished();
        });

        QList<CredentialRequest> requests;
        QList<ServerCertificate> hostKeys;
        RemoteAccess access;
        access.credentials = [&](const CredentialRequest& request) -> std::optional<Credentials> {
            requests << request;
            const QString userName = request.userName.isEmpty() ? SshServer::userName() : request.userName;
            if (answer == "agent")
                return SshAgent{userName};
            const QString key = answer == "key" ? server.clientKey() : server.strangerKey();
            return SshKey{userName, key, key + ".pub", {}};
        };
        if (hostCheck != "none") {
            access.certificateCheck = [&](const ServerCertificate& certificate) {
                hostKeys << certificate;
                return hostCheck == "accepts";
            };
        }
        const QUrl url = server.url(scene.remote.path());
        const SynchronizedRepository synchronizedRepository(scene.cloneUrl(), url, QStringLiteral("master"), access);
        std::optional<QString> failed = failureOf(synchronizedRepository);
        if (hostCheck != "none") {
            QVERIFY2(!hostKeys.isEmpty(), qPrintable(failed.value_or("succeeded")));
            QCOMPARE(hostKeys.first().sshHostKeySha256.toHex(), server.hostKeySha256().toHex());
        }
        if (!failure.isEmpty()) {
            QVERIFY2(failed && failed->contains(failure), qPrintable(failed.value_or("succeeded")));
            QVERIFY(!QFileInfo::exists(scene.clonePath() + "/Themes"));
            return;
        }
        QVERIFY2(!failed, qPrintable(failed.value_or("")));
        QVERIFY(!requests.isEmpty() && requests.first().sshAllowed && !requests.first().userPasswordAllowed);
        QCOMPARE(requests.first().userName, SshServer::userName());
        // The clone keeps no user; the fetch after it asks the provider for one and gets the new commit.
        QUrl stored = url;
        stored.setUserInfo({});
        QCOMPARE(runGit(scene.clonePath(), {"config", "remote.origin.url"}), stored.toString());
        scene.commitTheme("Dawn");
        failed = failureOf(synchronizedRepository);
        QVERIFY2(!failed, qPrintable(failed.value_or("")));
        QCOMPARE(scene.cloneHead(), scene.remote.headCommit());
    }

    // The host's check can refuse a certificate libgit2 accepted, never accept one it refused.
    void certificateCheckCanOnlyRefuse_data()
    {
        QTest::addColumn<bool>("trusted"); // the certificate's authority is among the trusted ones
        QTest::addColumn<bool>("hostAccepts");
        QTest::addColumn<bool>("succeeds");
        QTest::addColumn<bool>("hostAsked");
        QTest::newRow("trusted, accepted") << true << true << true << true;
        QTest::newRow("trusted, refused by the host") << true << false << false << true;
        QTest::newRow("untrusted, accepted by the host") << false << true << false << false;
    }

    void certificateCheckCanOnlyRefuse()
    {
        QFETCH(bool, trusted);
        QFETCH(bool, hostAccepts);
        QFETCH(bool, succeeds);
        QFETCH(bool, hostAsked);
        ThemeRepositoryScene scene(trusted ? Served::https : Served::http);
        // A second https front with an authority of its own that nobody trusts.
        TlsFront untrusted(scene.http->port());
        QVERIFY(untrusted.isRunning());
        const QUrl url = trusted ? scene.remoteUrl() : QUrl(QStringLiteral("https://127.0.0.1:%1/themes").arg(untrusted.port()));

        QList<ServerCertificate> asked;
        RemoteAccess access;
        access.certificateCheck = [&](const ServerCertificate& certificate) {
            asked << certificate;
            return hostAccepts;
        };
        const auto failure = failureOf(SynchronizedRepository(scene.cloneUrl(), url, QStringLiteral("master"), access));
        QVERIFY2(!failure == succeeds, qPrintable(failure.value_or("")));
        QCOMPARE(!asked.isEmpty(), hostAsked);
        for (const ServerCertificate& certificate : std::as_const(asked)) {
            QCOMPARE(certificate.host, QStringLiteral("127.0.0.1"));
            QVERIFY(certificate.x509Der.size() > 100);
        }
        if (!succeeds && hostAsked)
            QCOMPARE(*failure, "The certificate of 127.0.0.1 was refused by the application.");
        if (!succeeds)
            QVERIFY(!QFileInfo::exists(scene.clonePath() + "/Themes"));
    }

    // Proxies are found where git finds them; a logging proxy shows what went through it: https
    // tunnelled with CONNECT, plain http asked for with absolute targets. The lookup is the same for
    // both; https rows show only what differs: its own variables and the tunnel.
    void goesThroughTheConfiguredProxy_data()
    {
        QTest::addColumn<QString>("served");   // http or https
        QTest::addColumn<QString>("setting");  // how the proxy is named: environment variables, "git:KEY" or "git:KEY=" (empty)
        QTest::addColumn<QString>("proxyAuth"); // "": none asked; "given" in the proxy's URL; "missing"
        QTest::addColumn<QString>("expected"); // the start of the proxy's first request line; empty: unused
        QTest::addColumn<QString>("failure");  // PROXY: the proxy's host and port; empty: succeeds
        QTest::newRow("https_proxy") << "https" << "https_proxy" << "" << "CONNECT 127.0.0.1:" << "";
        QTest::newRow("HTTPS_PROXY") << "https" << "HTTPS_PROXY" << "" << "CONNECT 127.0.0.1:" << "";
        QTest::newRow("proxy credentials in its URL, https") << "https" << "https_proxy" << "given" << "CONNECT 127.0.0.1:" << "";
        QTest::newRow("http_proxy") << "http" << "http_proxy" << "" << "GET http://127.0.0.1:" << "";
        QTest::newRow("HTTP_PROXY") << "http" << "HTTP_PROXY" << "" << "GET http://127.0.0.1:" << "";
        QTest::newRow("http.proxy, http") << "http" << "git:http.proxy" << "" << "GET http://127.0.0.1:" << "";
        QTest::newRow("remote.origin.proxy") << "http" << "git:remote.origin.proxy" << "" << "GET http://127.0.0.1:" << "";
        QTest::newRow("http.<server>.proxy") << "http" << "git:http.SERVER.proxy" << "" << "GET http://127.0.0.1:" << "";
        QTest::newRow("an empty http.proxy overrides http_proxy") << "http" << "http_proxy git:http.proxy=" << "" << "" << "";
        QTest::newRow("no_proxy names the server, http") << "http" << "http_proxy no_proxy" << "" << "" << "";
        QTest::newRow("no proxy named, http") << "http" << "" << "" << "" << "";
        QTest::newRow("proxy credentials in its URL, http") << "http" << "http_proxy" << "given" << "GET http://127.0.0.1:" << "";
        QTest::newRow("proxy credentials missing, http")
            << "http" << "http_proxy" << "missing" << "GET http://127.0.0.1:" << "the proxy PROXY asks for credentials; give them in its URL";
    }

    void goesThroughTheConfiguredProxy()
    {
        QFETCH(QString, served);
        QFETCH(QString, setting);
        QFETCH(QString, proxyAuth);
        QFETCH(QString, expected);
        QFETCH(QString, failure);
        ThemeRepositoryScene scene(served == "https" ? Served::https : Served::http);
        const QString proxyCredentials = QStringLiteral("ada:pr0xy");
        ScriptedProxy proxy("logging-proxy.py", proxyAuth.isEmpty() ? QStringList() : QStringList{proxyCredentials});
        QVERIFY(proxy.isRunning());
        const QString proxyUrl = proxy.url(proxyAuth == "given" ? proxyCredentials : QString());
        const SynchronizedRepository synchronizedRepository(scene.cloneUrl(), scene.remoteUrl());
        if (setting.contains("git:")) {
            // The clone's own configuration is read on every fetch.
            QVERIFY(!failureOf(synchronizedRepository));
            scene.commitTheme("Dawn");
        }
        QUrl server = scene.remoteUrl();
        server.setPath({});
        for (const QString& name : setting.split(' ', Qt::SkipEmptyParts)) {
            if (name.startsWith("git:")) {
                const QStringList keyAndValue = name.mid(4).split('=');
                QString key = keyAndValue.first();
                runGit(scene.clonePath(), {"config", key.replace("SERVER", server.toString()),
                                           keyAndValue.size() > 1 ? keyAndValue.last() : proxyUrl});
            } else {
                qputenv(name.toLatin1().constData(), name == "no_proxy" ? QByteArray("127.0.0.1") : proxyUrl.toLatin1());
            }
        }

        const auto failed = failureOf(synchronizedRepository);
        const QString proxyAddress = QStringLiteral("127.0.0.1:%1").arg(proxy.port());
        QCOMPARE(failed.value_or(QString()), failure.replace("PROXY", proxyAddress));
        if (!failed)
            QCOMPARE(scene.cloneHead(), scene.remote.headCommit());
        const QStringList requests = proxy.lines();
        if (expected.isEmpty()) {
            QVERIFY2(requests.isEmpty(), qPrintable(requests.join('\n')));
        } else {
            QVERIFY(!requests.isEmpty());
            QVERIFY2(requests.first().startsWith(expected + QString::number(scene.tls ? scene.tls->port() : scene.http->port())),
                     qPrintable(requests.first()));
        }
    }

    // A repository that moved is followed to where its listing was redirected, with or without a proxy.
    void followsARedirectedRepository_data()
    {
        QTest::addColumn<bool>("proxied");
        QTest::newRow("directly") << false;
        QTest::newRow("through a proxy") << true;
    }

    void followsARedirectedRepository()
    {
        QFETCH(bool, proxied);
        ThemeRepositoryScene scene(Served::http);
        std::optional<ScriptedProxy> proxy;
        if (proxied) {
            proxy.emplace("logging-proxy.py");
            qputenv("http_proxy", proxy->url().toLatin1());
        }
        const QUrl moved = scene.http->url(QStringLiteral("moved/themes"));
        const auto failure = failureOf(SynchronizedRepository(scene.cloneUrl(), moved));
        QVERIFY2(!failure, qPrintable(failure.value_or("")));
        QCOMPARE(scene.cloneHead(), scene.remote.headCommit());
        if (proxy)
            QVERIFY(!proxy->lines().isEmpty());
    }

    // Whatever a proxy answers, the failure says what was wrong with it and leaves no clone behind.
    void namesWhatIsWrongWithAProxysAnswer_data()
    {
        QTest::addColumn<QByteArray>("answer");
        QTest::addColumn<QString>("failure"); // PROXY: the proxy's host and port
        QTest::newRow("not http") << QByteArray("SSH-2.0-OpenSSH_9.2\r\n")
                                  << "a response that is not HTTP/1.x (\"SSH-2.0-OpenSSH_9.2\") from the proxy PROXY";
        QTest::newRow("a gateway error") << QByteArray("HTTP/1.1 502 Bad Gateway\r\nContent-Length: 0\r\n\r\n")
                                         << "unexpected http status code: 502";
        QTest::newRow("a web page") << QByteArray("HTTP/1.1 200 OK\r\nContent-Type: text/html\r\nContent-Length: 5\r\n\r\nhello")
                                    << "invalid content-type: 'text/html'";
        QTest::newRow("a broken chunk")
            << QByteArray("HTTP/1.1 200 OK\r\nContent-Type: application/x-git-upload-pack-advertisement\r\n"
                          "Transfer-Encoding: chunked\r\n\r\nzz\r\n")
            << "a broken chunk size \"zz\" from the proxy PROXY";
    }

    void namesWhatIsWrongWithAProxysAnswer()
    {
        QFETCH(QByteArray, answer);
        QFETCH(QString, failure);
        ThemeRepositoryScene scene(Served::http);
        StallingServer proxy(StallingServer::greeting(answer));
        qputenv("http_proxy", "http://127.0.0.1:" + QByteArray::number(proxy.port()));
        const auto failed = failureOf(SynchronizedRepository(scene.cloneUrl(), scene.remoteUrl()));
        QCOMPARE(failed.value_or(QString()), failure.replace("PROXY", "127.0.0.1:" + QString::number(proxy.port())));
        QCOMPARE(Repository::isValid(scene.cloneUrl()).value_or(true), false);
    }

    // no_proxy as git and curl read it: names, domains and ports, never a name that merely ends alike.
    void namesHostsToReachDirectly_data()
    {
        QTest::addColumn<QString>("url");
        QTest::addColumn<QByteArray>("noProxy");
        QTest::addColumn<bool>("direct");
        QTest::newRow("the host") << "http://example.org/themes" << QByteArray("example.org") << true;
        QTest::newRow("a host in the domain") << "http://git.example.org/themes" << QByteArray("example.org") << true;
        QTest::newRow("the domain with a leading dot") << "http://git.example.org/themes" << QByteArray(".example.org") << true;
        QTest::newRow("the domain with a star") << "http://git.example.org/themes" << QByteArray("*.example.org") << true;
        QTest::newRow("a name that only ends alike") << "http://badexample.org/themes" << QByteArray("example.org") << false;
        QTest::newRow("in a list with spaces") << "http://example.org/themes" << QByteArray("localhost, example.org") << true;
        QTest::newRow("letter case") << "http://Git.Example.ORG/themes" << QByteArray("example.org") << true;
        QTest::newRow("the port given") << "http://example.org:8080/themes" << QByteArray("example.org:8080") << true;
        QTest::newRow("another port") << "http://example.org:8080/themes" << QByteArray("example.org:9090") << false;
        QTest::newRow("the scheme's port") << "https://example.org/themes" << QByteArray("example.org:443") << true;
        QTest::newRow("everything") << "http://example.org/themes" << QByteArray("*") << true;
        QTest::newRow("nothing") << "http://example.org/themes" << QByteArray(" , ") << false;
    }

    void namesHostsToReachDirectly()
    {
        QFETCH(QString, url);
        QFETCH(QByteArray, noProxy);
        QFETCH(bool, direct);
        QCOMPARE(HttpProxyLookup::isExempt(QUrl(url), noProxy), direct);
    }

    // The clone follows the configured branch, and the configured remote wherever it moves.
    void followsTheConfiguredBranchAndRemote_data()
    {
        QTest::addColumn<QString>("remoteBranch");
        QTest::addColumn<QString>("configuredBranch");
        QTest::addColumn<QString>("change"); // what happens between two synchronisations
        QTest::addColumn<QString>("failure"); // empty: both succeed
        QTest::newRow("a repository on main") << "main" << "main" << "" << "";
        QTest::newRow("main, master configured") << "main" << "master" << ""
                                                 << "cannot locate remote-tracking branch 'origin/master'";
        QTest::newRow("the repository moved") << "master" << "master" << "moved" << "";
        QTest::newRow("the clone stores a password") << "master" << "master" << "password stored" << "";
        QTest::newRow("origin renamed by hand") << "master" << "master" << "no origin" << "remote 'origin' does not exist";
    }

    void followsTheConfiguredBranchAndRemote()
    {
        QFETCH(QString, remoteBranch);
        QFETCH(QString, configuredBranch);
        QFETCH(QString, change);
        QFETCH(QString, failure);
        ThemeRepositoryScene scene;
        if (remoteBranch != "master")
            runGit(scene.remote.path(), {"branch", "-m", "master", remoteBranch});
        std::optional<QString> failed = failureOf(SynchronizedRepository(scene.cloneUrl(), scene.remoteUrl(), configuredBranch));
        if (change.isEmpty() && !failure.isEmpty()) {
            QCOMPARE(failed.value_or(""), failure);
            return;
        }
        QVERIFY2(!failed, qPrintable(failed.value_or("")));

        QUrl remoteUrl = scene.remoteUrl();
        if (change == "moved") {
            scene.moveRemote(true);
            remoteUrl = QUrl::fromLocalFile(scene.root.filePath("away"));
        } else if (change == "password stored") {
            QUrl withPassword = remoteUrl;
            withPassword.setUserInfo("ada:s3cret");
            runGit(scene.clonePath(), {"config", "remote.origin.url", withPassword.toString()});
        } else if (change == "no origin") {
            runGit(scene.clonePath(), {"remote", "rename", "origin", "upstream"});
        }
        const QString newest = change == "moved" ? QString() : scene.commitTheme("Dawn");

        failed = failureOf(SynchronizedRepository(scene.cloneUrl(), remoteUrl, configuredBranch));
        if (!failure.isEmpty()) {
            QCOMPARE(failed.value_or(""), failure);
            return;
        }
        QVERIFY2(!failed, qPrintable(failed.value_or("")));
        QCOMPARE(runGit(scene.clonePath(), {"config", "remote.origin.url"}), remoteUrl.toString());
        if (!newest.isEmpty())
            QCOMPARE(scene.cloneHead(), newest);
    }
};

QTEST_GUILESS_MAIN(RemoteAccessTest)
#include "RemoteAccessTest.moc"
