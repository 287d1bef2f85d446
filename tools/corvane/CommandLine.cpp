// SPDX-License-Identifier: MIT
#include "CommandLine.h"

#include "GitCredentialHelper.h"

#include <QFileInfo>
#include <QSettings>
#include <QRegularExpression>

#include <cstdio>

namespace corvane::cli {

CommandLine::CommandLine(const QString& command, const QString& synopsis, const QString& description)
    : m_command(command), m_synopsis(synopsis)
{
    m_parser.setApplicationDescription(description);
    // Qt's own help option would also list --help-all, which describes Qt's options, not the tool's.
    m_parser.addOption(QCommandLineOption({QStringLiteral("h"), QStringLiteral("help")},
                                          QStringLiteral("Show this help and exit.")));
}

void CommandLine::addLocations(bool remote, bool clone, bool installed)
{
    const auto add = [this](const char* name, const char* valueName, const char* description) {
        m_parser.addOption(QCommandLineOption(QString::fromLatin1(name), QString::fromLatin1(description),
                                              QString::fromLatin1(valueName)));
        m_requiredLocations << QString::fromLatin1(name);
    };
    if (remote) {
        add("remote", "URL", "The remote theme repository: a URL, user@host:path for ssh, or a local path. "
                             "Credentials come from git's credential helpers.");
        m_parser.addOption(QCommandLineOption(QStringLiteral("branch"),
                                              QStringLiteral("The repository's branch to follow (default: master)."),
                                              QStringLiteral("NAME")));
    }
    if (clone)
        add("clone", "DIR", "The directory of the local clone.");
    if (installed)
        add("installed", "DIR", "The directory of installed themes.");
}

void CommandLine::addSkipOptions()
{
    m_parser.addOption(QCommandLineOption(
        QStringLiteral("settings"),
        QStringLiteral("A host's settings as an ini file: the versions skipped in its updater window (group "
                       "Corvane, array skippedVersions) are left out. Without it nothing is skipped."),
        QStringLiteral("FILE")));
    m_parser.addOption(QCommandLineOption(QStringLiteral("include-skipped"),
                                          QStringLiteral("Keep the rows of skipped versions too.")));
}

Result<SkippedVersions, QString> CommandLine::skippedVersions() const
{
    const QString file = m_parser.value(QStringLiteral("settings"));
    if (file.isEmpty() || m_parser.isSet(QStringLiteral("include-skipped")))
        return SkippedVersions();
    if (!QFileInfo(file).isFile())
        return std::unexpected(QStringLiteral("corvane %1: no settings file '%2'").arg(m_command, file));
    QSettings settings(file, QSettings::IniFormat);
    if (settings.status() != QSettings::NoError)
        return std::unexpected(QStringLiteral("corvane %1: the settings file '%2' cannot be read").arg(m_command, file));
    return SkippedVersions::load(settings);
}

std::optional<int> CommandLine::parse(const QStringList& arguments)
{
    if (!m_parser.parse(arguments))
        return usageError(m_parser.errorText());
    if (m_parser.isSet(QStringLiteral("help"))) {
        printOut(QStringLiteral("usage: corvane %1 %2").arg(m_command, m_synopsis));
        printOut(m_parser.helpText().section(u'\n', 1));
        return done;
    }
    for (const QString& name : m_requiredLocations) {
        if (m_parser.value(name).isEmpty())
            return usageError(QStringLiteral("--%1 is required").arg(name));
    }
    return std::nullopt;
}

QUrl CommandLine::locationFromArgument(const QString& argument)
{
    if (argument.contains(u"://"))
        return QUrl(argument);
    // git's rule: "[user@]host:path" is ssh when the colon comes before any slash.
    static const QRegularExpression scpLike(QStringLiteral(R"(^(?:([^@/:]+)@)?([^@/:\[\]]+|\[[^\]/]+\]):(.*)$)"));
    if (const QRegularExpressionMatch match = scpLike.match(argument); match.hasMatch()) {
        QUrl url;
        url.setScheme(QStringLiteral("ssh"));
        url.setUserName(match.captured(1));
        url.setHost(match.captured(2).remove(u'[').remove(u']'));
        // A relative path is relative to the user's home on the server.
        const QString path = match.captured(3);
        url.setPath(path.startsWith(u'/') ? path : QStringLiteral("/~/") + path);
        return url;
    }
    return QUrl::fromLocalFile(QFileInfo(argument).absoluteFilePath());
}

QUrl CommandLine::remote() const { return locationFromArgument(m_parser.value(QStringLiteral("remote"))); }
QUrl CommandLine::clone() const { return locationFromArgument(m_parser.value(QStringLiteral("clone"))); }
QUrl CommandLine::installed() const { return locationFromArgument(m_parser.value(QStringLiteral("installed"))); }

Configuration CommandLine::configuration() const
{
    Configuration configuration(remote(), clone(),
                                m_parser.optionNames().contains(QStringLiteral("installed")) ? installed() : QUrl());
    if (const QString branch = m_parser.value(QStringLiteral("branch")); !branch.isEmpty())
        configuration = configuration.withBranch(branch);
    return configuration.withRemoteAccess(RemoteAccess{gitCredentialHelper(), {}});
}

int CommandLine::usageError(const QString& reason) const
{
    printError(QStringLiteral("usage: corvane %1 %2").arg(m_command, m_synopsis));
    if (!reason.isEmpty())
        printError(QStringLiteral("corvane %1: %2").arg(m_command, reason));
    return badUsage;
}

void printOut(const QString& line)
{
    const QByteArray bytes = line.toUtf8() + '\n';
    std::fwrite(bytes.constData(), 1, bytes.size(), stdout);
    std::fflush(stdout);
}

void printError(const QString& line)
{
    const QByteArray bytes = line.toUtf8() + '\n';
    std::fwrite(bytes.constData(), 1, bytes.size(), stderr);
    std::fflush(stderr);
}

} // namespace corvane::cli
