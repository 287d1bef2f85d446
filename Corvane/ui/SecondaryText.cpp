// SPDX-License-Identifier: MIT
#include "Corvane/ui/SecondaryText.h"

#include <QLabel>

#include <algorithm>

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
