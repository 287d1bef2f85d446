// SPDX-License-Identifier: MIT
#include "Corvane/ui/SecondaryText.h"

#include <QLabel>

#include <algorithm>
#include <cmath>

namespace corvane {

QColor secondaryTextColour(const QPalette& palette, QPalette::ColorRole textRole)
{
    const QColor text = palette.color(textRole);
    const QColor background = palette.color(textRole == QPalette::Text ? QPalette::Base : QPalette::Window);
    // Two thirds of the way from the background to the text: well above readable contrast.
    constexpr double weight = 0.62;
    return QColor::fromRgbF(float(background.redF() + (text.redF() - background.redF()) * weight),
                            float(background.greenF() + (text.greenF() - background.greenF()) * weight),
                            float(background.blueF() + (text.blueF() - background.blueF()) * weight));
}

namespace {

double relativeLuminance(const QColor& colour)
{
    const auto linear = [](float channel) {
        return channel <= 0.04045f ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) + 0.0722 * linear(colour.blueF());
}

QColor blended(const QColor& from, const QColor& to, double weight)
{
    return QColor::fromRgbF(float(from.redF() + (to.redF() - from.redF()) * weight),
                            float(from.greenF() + (to.greenF() - from.greenF()) * weight),
                            float(from.blueF() + (to.blueF() - from.blueF()) * weight));
}

} // namespace

double contrastRatio(const QColor& first, const QColor& second)
{
    const double a = relativeLuminance(first), b = relativeLuminance(second);
    return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05);
}

QColor legibleAccentColour(const QPalette& palette)
{
    constexpr double minimumContrast = 3.0;
    const QColor background = palette.color(QPalette::Base);
    const QColor accent = palette.color(QPalette::Highlight);
    const QColor text = palette.color(QPalette::Text);
    // The smallest step toward the text colour that is legible keeps as much of the accent's hue as can be.
    for (int step = 0; step <= 10; ++step) {
        const QColor candidate = blended(accent, text, step / 10.0);
        if (contrastRatio(candidate, background) >= minimumContrast)
            return candidate;
    }
    return text;
}

QFont secondaryFont(const QFont& font)
{
    QFont smaller = font;
    if (font.pointSizeF() > 0)
        smaller.setPointSizeF(std::max(7.0, font.pointSizeF() - 1));
    else
        smaller.setPixelSize(std::max(9, font.pixelSize() - 1));
    return smaller;
}

void setLabelColour(QLabel* label, const QColor& colour)
{
    QPalette palette = label->palette();
    // A label on the list's Base background draws with Text, elsewhere with WindowText.
    palette.setColor(QPalette::WindowText, colour);
    palette.setColor(QPalette::Text, colour);
    label->setPalette(palette);
}

} // namespace corvane
