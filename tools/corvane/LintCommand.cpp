// SPDX-License-Identifier: MIT
#include "CommandLine.h"
#include "Commands.h"
#include "OutputField.h"

#include "Corvane/differences/StyleLabel.h"
#include "Corvane/themes/FileManager.h"
#include "Corvane/themes/FileNameEncoding.h"
#include "Corvane/themes/ThemeDecoder.h"
#include "Corvane/themes/ThemeDecodingError.h"
#include "Corvane/themes/ThemeReader.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <optional>
#include <vector>

namespace corvane::cli {

namespace {

struct Checked {
    QString fileName;
    std::optional<Theme> theme;
    QString error; // the reader's full text when the file failed
};

} // namespace

int runLint(const QStringList& arguments)
{
    CommandLine commandLine(QStringLiteral("lint"), QStringLiteral("DIR [--json]"),
                            QStringLiteral("Checks every theme file (*.theme.json) of a directory and reports each "
                                           "one: its name, style, authors and version, or why it cannot be read."));
    QCommandLineParser& parser = commandLine.parser();
    parser.addPositionalArgument(QStringLiteral("DIR"), QStringLiteral("The directory of theme files."));
    const QCommandLineOption json(QStringLiteral("json"), QStringLiteral("Print one JSON array instead of lines."));
    parser.addOption(json);
    if (const auto status = commandLine.parse(arguments))
        return *status;
    const QStringList positional = parser.positionalArguments();
    if (positional.size() != 1)
        return commandLine.usageError(positional.isEmpty() ? QStringLiteral("DIR is required")
                                                           : QStringLiteral("only one DIR is taken"));

    const QUrl directory = CommandLine::locationFromArgument(positional.first());
    auto listed = FileManager::shared()->filesInDirectory(directory);
    if (!listed) {
        printError(ThemeDecodingError{std::move(listed.error())}.errorDescription());
        return failed;
    }

    // The theme files the reader would read, in byte order of their names so that the report is the
    // same on every machine, whatever order the directory lists them in.
    struct Listed {
        QUrl url;
        QString name;
        QByteArray key;
    };
    std::vector<Listed> files;
    for (const QUrl& url : std::as_const(*listed)) {
        const QString name = url.fileName();
        if (ThemeReader::isThemeFileName(name))
            files.push_back(Listed{url, name, FileNameEncoding::encodeOrEmpty(name)});
    }
    std::sort(files.begin(), files.end(), [](const Listed& a, const Listed& b) { return a.key < b.key; });

    ThemeDecoder decoder;
    std::vector<Checked> results;
    bool anyFailed = false;
    for (const Listed& file : files) {
        auto theme = decoder.decodeTheme(file.url);
        if (theme) {
            results.push_back(Checked{file.name, std::move(*theme), QString()});
        } else {
            anyFailed = true;
            results.push_back(Checked{file.name, std::nullopt, ThemeDecodingError{std::move(theme.error())}.errorDescription()});
        }
    }

    if (parser.isSet(json)) {
        QJsonArray report;
        for (const Checked& result : results) {
            QJsonObject entry{{QStringLiteral("file"), result.fileName}};
            if (result.theme) {
                entry.insert(QStringLiteral("name"), result.theme->identifier.name());
                entry.insert(QStringLiteral("style"), styleName(result.theme->identifier.style()));
                entry.insert(QStringLiteral("styleLabel"), styleLabel(result.theme->identifier.style()));
                entry.insert(QStringLiteral("authors"), QJsonArray::fromStringList(result.theme->authors));
                entry.insert(QStringLiteral("version"), result.theme->version.toString());
            } else {
                entry.insert(QStringLiteral("error"), result.error);
            }
            report.append(entry);
        }
        printOut(report.isEmpty() ? QStringLiteral("[]")
                                  : QString::fromUtf8(QJsonDocument(report).toJson(QJsonDocument::Indented)).trimmed());
    } else {
        for (const Checked& result : results) {
            QStringList fields{escapeField(result.fileName)};
            if (result.theme) {
                fields << escapeField(result.theme->identifier.name()) << styleName(result.theme->identifier.style())
                       << escapeField(result.theme->authors.join(QStringLiteral(", ")))
                       << result.theme->version.toString();
            } else {
                fields << QStringLiteral("error") << escapeField(result.error);
            }
            printOut(fields.join(u'\t'));
        }
    }
    return anyFailed ? failed : done;
}

} // namespace corvane::cli
