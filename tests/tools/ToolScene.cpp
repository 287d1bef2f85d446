#include "ToolScene.h"

#include "ThemeFiles.h"

#include <QDir>
#include <QProcess>

namespace corvane::test {

QStringList ToolRun::outLines() const
{
    return out.isEmpty() ? QStringList{} : out.chopped(out.endsWith(u'\n') ? 1 : 0).split(u'\n');
}

ToolRun runCorvane(const QStringList& arguments)
{
    QProcess tool;
    tool.start(QStringLiteral(CORVANE_TOOL_PATH), arguments);
    ToolRun run;
    if (!tool.waitForFinished(120000) || tool.exitStatus() != QProcess::NormalExit) {
        tool.kill();
        tool.waitForFinished();
        run.err = QStringLiteral("corvane did not finish normally");
        return run;
    }
    run.exitCode = tool.exitCode();
    run.out = QString::fromUtf8(tool.readAllStandardOutput());
    run.err = QString::fromUtf8(tool.readAllStandardError());
    return run;
}

QString composedCafe()
{
    return QString::fromUtf8("Caf\u00e9");
}

QString decomposedCafe()
{
    return QString::fromUtf8("Cafe\u0301");
}

ToolScene::ToolScene(bool overGitProtocol) : m_remote(m_directory.filePath(QStringLiteral("remote")))
{
    if (overGitProtocol)
        m_daemon = std::make_unique<GitDaemon>(m_directory.path());
}

QString ToolScene::remoteURL() const
{
    if (m_daemon)
        return m_daemon->url(QStringLiteral("remote")).toString();
    return m_remote.fileUrl().toString();
}

QStringList ToolScene::locations() const
{
    return {QStringLiteral("--remote"), remoteURL(), QStringLiteral("--clone"), clonePath(),
            QStringLiteral("--installed"), installedPath()};
}

void ToolScene::publishStandardThemes()
{
    const QString themes = m_remote.themesDirectory();
    writeTheme(themes, QStringLiteral("aurora.theme.json"), QStringLiteral("Aurora"), QStringLiteral("light"),
               {QStringLiteral("Ann"), QStringLiteral("Bo")}, QStringLiteral("1.0.0"));
    writeTheme(themes, QStringLiteral("cafe.theme.json"), composedCafe(), QStringLiteral("Light"),
               {QStringLiteral("Dee")}, QStringLiteral("3.0.0"));
    writeTheme(themes, QStringLiteral("lunar.theme.json"), QStringLiteral("Lunar"), QStringLiteral("dark"), {},
               QStringLiteral("1.0.0"));
    writeTheme(themes, QStringLiteral("solar-dark.theme.json"), QStringLiteral("Solar"), QStringLiteral("dark"),
               {QStringLiteral("Cy")}, QStringLiteral("2.0.0"));
    writeFile(m_remote.path(), QStringLiteral("README.md"), "Themes for everyone.\n");
    m_remote.commitAll(QStringLiteral("Publish the themes"));

    writeTheme(installedPath(), QStringLiteral("cafe-old.theme.json"), decomposedCafe(), QStringLiteral("light"),
               {QStringLiteral("Dee")}, QStringLiteral("2.0.0"));
    writeTheme(installedPath(), QStringLiteral("lunar.theme.json"), QStringLiteral("Lunar"), QStringLiteral("dark"), {},
               QStringLiteral("1.0.0"));
    writeTheme(installedPath(), QStringLiteral("my-solar.theme.json"), QStringLiteral("Solar"), QStringLiteral("dark"),
               {QStringLiteral("Cy")}, QStringLiteral("1.5"));
}

} // namespace corvane::test
