// SPDX-License-Identifier: MIT
#include "ThemeSwatches.h"

#include <QColor>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QPainter>

namespace {

QColor colourAt(const QJsonObject& object, const QString& key, const QColor& fallback)
{
    const QJsonValue value = object.value(key);
    const QString name = value.isObject() ? value.toObject().value(QStringLiteral("color")).toString() : value.toString();
    const QColor colour = QColor::fromString(name);
    return colour.isValid() ? colour : fallback;
}

} // namespace

QImage ThemeSwatches::previewForThemeFile(const QString& path, QSize size)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QJsonObject theme = QJsonDocument::fromJson(file.read(256 * 1024)).object();
    const QJsonObject colours = theme.value(QStringLiteral("colors")).toObject();
    if (colours.isEmpty())
        return {};
    const QJsonObject syntax = theme.value(QStringLiteral("syntax")).toObject();
    const QColor background = colourAt(colours, QStringLiteral("editor.background"), Qt::white);
    const QColor foreground = colourAt(colours, QStringLiteral("editor.foreground"), Qt::black);
    const QColor accent = colourAt(colours, QStringLiteral("accent"), foreground);
    const QColor selection = colourAt(colours, QStringLiteral("editor.selection"), background.darker(120));
    const QColor keyword = colourAt(syntax, QStringLiteral("keyword"), accent);
    const QColor comment = colourAt(syntax, QStringLiteral("comment"), foreground);

    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(background);
    QPainter painter(&image);
    const qreal unit = size.height() / 8.0;
    // An accent stripe down the left, then four lines of "code".
    painter.fillRect(QRectF(0, 0, unit * 1.2, size.height()), accent);
    painter.fillRect(QRectF(unit * 1.2, unit * 3.2, size.width(), unit * 1.6), selection);
    struct Stroke {
        int line;
        qreal from, length;
        QColor colour;
    };
    const Stroke strokes[] = {{0, 0, 5, comment}, {1, 0, 2.5, keyword}, {1, 3, 4, foreground},
                              {2, 1, 3, foreground}, {2, 4.5, 2, keyword}, {3, 0, 2.5, keyword}};
    for (const Stroke& stroke : strokes) {
        const qreal left = unit * (2.2 + stroke.from * 0.9);
        painter.fillRect(QRectF(left, unit * (1 + stroke.line * 1.7), unit * stroke.length * 0.9, unit * 0.8),
                         stroke.colour);
    }
    return image;
}
