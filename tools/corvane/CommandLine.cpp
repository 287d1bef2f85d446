// SPDX-License-Identifier: MIT
#include "CommandLine.h"

#include <QFileInfo>

#include <cstdio>

namespace corvane::cli {

CommandLine::CommandLine(const QString& command, const QString& synopsis, const QString& description)
    : m_command(command), m_synopsis(synopsis)
{
    m_parser.setApplicationDescription(description);
    m_parser.addHelpOption();
}

void CommandLine::addLocations(bool remote, bool clone, bool installed)
{
    const auto add = [this](const char* name, const char* valueName, const char* description) {
        m_parser.addOption(QCommandLineOption(QString::fromLatin1(name), QString::fromLatin1(description),
                                              QString::fromLatin1(valueName)));
        m_requiredLocations << QString::fromLatin1(name);
    };
    if (remote)
        add("remote", "URL", "The remote theme repository (a URL, or a local path).");
    if (clone)
        add("clone", "DIR", "The directory of the local clone.");
    if (installed)
        add("installed", "DIR", "The directory of installed themes.");
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
    return QUrl::fromLocalFile(QFileInfo(argument).absoluteFilePath());
}

QUrl CommandLine::remote() const { return locationFromArgument(m_parser.value(QStringLiteral("remote"))); }
QUrl CommandLine::clone() const { return locationFromArgument(m_parser.value(QStringLiteral("clone"))); }
QUrl CommandLine::installed() const { return locationFromArgument(m_parser.value(QStringLiteral("installed"))); }

Configuration CommandLine::configuration() const
{
    return Configuration(remote(), clone(), m_parser.optionNames().contains(QStringLiteral("installed"))
                                                ? installed()
                                                : QUrl());
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
