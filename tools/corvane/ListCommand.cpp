// SPDX-License-Identifier: MIT
#include "CommandLine.h"
#include "Commands.h"
#include "ComparisonSetup.h"
#include "OutputField.h"

namespace corvane::cli {
namespace {

QString plainLine(const ThemeEntry& entry)
{
    return QStringList{escapeField(entry.name), escapeField(entry.style), escapeField(entry.authors),
                       entry.installedVersion.value_or(QStringLiteral("-")), entry.remoteVersion}
        .join(u'\t');
}

// JSON text of a string: quotes, backslashes, control characters and unpaired surrogates escaped,
// everything else as is.
void appendJsonString(QString& out, const QString& text)
{
    out += u'"';
    for (qsizetype index = 0; index < text.size(); ++index) {
        const QChar c = text[index];
        const bool paired = (c.isHighSurrogate() && index + 1 < text.size() && text[index + 1].isLowSurrogate())
            || (c.isLowSurrogate() && index > 0 && text[index - 1].isHighSurrogate());
        switch (c.unicode()) {
        case u'"':
            out += QLatin1String("\\\"");
            break;
        case u'\\':
            out += QLatin1String("\\\\");
            break;
        case u'\n':
            out += QLatin1String("\\n");
            break;
        case u'\r':
            out += QLatin1String("\\r");
            break;
        case u'\t':
            out += QLatin1String("\\t");
            break;
        default:
            // Unpaired surrogates as escapes too: a byte of a file name that is not UTF-8 is held as
            // one (U+DC80 to U+DCFF), which UTF-8 output could not carry.
            if (c.unicode() < 0x20 || (c.isSurrogate() && !paired))
                out += QStringLiteral("\\u%1").arg(c.unicode(), 4, 16, QLatin1Char('0'));
            else
                out += c;
        }
    }
    out += u'"';
}

void appendJsonStrings(QString& out, const QStringList& texts)
{
    out += u'[';
    for (qsizetype index = 0; index < texts.size(); ++index) {
        if (index > 0)
            out += QLatin1String(", ");
        appendJsonString(out, texts[index]);
    }
    out += u']';
}

// The keys in the order the rows show them, so a reader of the output sees a row as the window does;
// name, style and authors as lint gives them.
void appendJsonObject(QString& out, const ThemeRow& row)
{
    const ThemeEntry& entry = row.entry;
    const auto [style, authors] = std::visit(
        [](const auto& difference) -> std::pair<Theme::Style, QStringList> {
            if constexpr (std::is_same_v<std::decay_t<decltype(difference)>, NewTheme>)
                return {difference.style, difference.authors};
            else
                return {difference.identifier.style(), difference.authors};
        },
        row.difference);
    const auto key = [&out](const char* name, bool first = false) {
        out += QLatin1String(first ? "    {\"" : ", \"");
        out += QLatin1String(name);
        out += QLatin1String("\": ");
    };
    key("name", true);
    appendJsonString(out, entry.name);
    key("style");
    appendJsonString(out, styleName(style));
    key("styleLabel");
    appendJsonString(out, entry.style);
    key("authors");
    appendJsonStrings(out, authors);
    key("installedVersion");
    if (entry.installedVersion)
        appendJsonString(out, *entry.installedVersion);
    else
        out += QLatin1String("null");
    key("remoteVersion");
    appendJsonString(out, entry.remoteVersion);
    key("source");
    appendJsonString(out, entry.copyCommand.sourcePath);
    key("destination");
    appendJsonString(out, entry.copyCommand.destinationPath);
    out += u'}';
}

} // namespace

int runList(const QStringList& arguments)
{
    CommandLine commandLine(
        QStringLiteral("list"),
        QStringLiteral("--remote URL --clone DIR --installed DIR [--branch NAME] [--settings FILE [--include-skipped]] "
                       "[--json]"),
        QStringLiteral("Synchronises the clone and prints the rows the updater window would show, in its order: "
                       "every new theme, then every update, each group by name. One row per line, "
                       "tab-separated: name, style, authors, installed version (- for a new theme), "
                       "version in the repository."));
    commandLine.addLocations(true, true, true);
    commandLine.addSkipOptions();
    const QCommandLineOption json(QStringLiteral("json"),
                                  QStringLiteral("Print one JSON array of objects with the keys name, style (dark or "
                                                 "light), styleLabel (as the window shows it), authors (an array), "
                                                 "installedVersion (null for a new theme), remoteVersion, source "
                                                 "and destination."));
    commandLine.parser().addOption(json);
    if (auto status = commandLine.parse(arguments))
        return *status;
    if (!commandLine.parser().positionalArguments().isEmpty())
        return commandLine.usageError(QStringLiteral("unexpected argument '%1'")
                                          .arg(commandLine.parser().positionalArguments().constFirst()));

    const auto skipped = commandLine.skippedVersions();
    if (!skipped) {
        printError(skipped.error());
        return failed;
    }
    auto rows = findThemeRows(commandLine.configuration());
    if (!rows) {
        printError(rows.error());
        return failed;
    }
    removeSkipped(*rows, *skipped);
    if (commandLine.parser().isSet(json)) {
        // One object per line inside one array.
        QString text = QStringLiteral("[");
        for (qsizetype i = 0; i < rows->size(); ++i) {
            text += QLatin1String(i == 0 ? "\n" : ",\n");
            appendJsonObject(text, rows->at(i));
        }
        text += QLatin1String(rows->isEmpty() ? "]" : "\n]");
        printOut(text);
        return done;
    }
    QString text;
    for (const ThemeRow& row : *rows) {
        text += plainLine(row.entry);
        text += u'\n';
    }
    if (!text.isEmpty())
        printOut(text.chopped(1));
    return done;
}

} // namespace corvane::cli
