// SPDX-License-Identifier: MIT
#pragma once
// The Qt Linguist catalogues of the source tree, read as the translation tests compare them.
#include <QFile>
#include <QHash>
#include <QRegularExpression>
#include <QSet>
#include <QStringList>
#include <QXmlStreamReader>

namespace corvane::test {

struct Message {
    QString source;
    QStringList translations; // one, or every plural form
    QString type;
    bool counted = false;
};

inline QString sourceFile(const QString& relative)
{
    return qEnvironmentVariable("CORVANE_TEST_SOURCE_DIR") + u'/' + relative;
}

// The messages of a catalogue, by id.
inline QHash<QString, Message> readCatalogue(const QString& path)
{
    QHash<QString, Message> messages;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return messages;
    QXmlStreamReader xml(&file);
    QString id;
    while (!xml.atEnd()) {
        if (!xml.readNextStartElement())
            continue;
        if (xml.name() == u"message") {
            id = xml.attributes().value(QLatin1StringView("id")).toString();
            messages[id].counted = xml.attributes().value(QLatin1StringView("numerus")) == u"yes";
        } else if (xml.name() == u"source") {
            messages[id].source = xml.readElementText();
        } else if (xml.name() == u"translation") {
            messages[id].type = xml.attributes().value(QLatin1StringView("type")).toString();
            if (!messages[id].counted)
                messages[id].translations = {xml.readElementText()};
        } else if (xml.name() == u"numerusform") {
            messages[id].translations.append(xml.readElementText());
        }
    }
    return messages;
}

// The numbered markers of a text, "%1" to "%99", and any old-style "%@" left behind.
inline QSet<QString> markers(const QString& text)
{
    static const QRegularExpression marker(QStringLiteral("%(\\d{1,2}|@)"));
    QSet<QString> found;
    for (const auto& match : marker.globalMatch(text))
        found.insert(match.captured());
    return found;
}

} // namespace corvane::test
