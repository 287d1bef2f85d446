// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QFont>
#include <QPalette>

class QLabel;

namespace corvane {

// Secondary text, as desktop lists show details under a title: the text colour blended toward the
// background, so it stays legible and quieter in light and dark palettes alike.
QColor secondaryTextColour(const QPalette& palette, QPalette::ColorRole textRole = QPalette::WindowText);

// The palette's accent (Highlight) as a mark drawn on the list's background (Base): moved toward the
// text colour until it stands out at a contrast of at least 3:1, as dark palettes often pair a deep
// accent with a dark background.
QColor legibleAccentColour(const QPalette& palette);

// The contrast ratio of two colours, 1 (none) to 21 (black on white), from their relative luminance.
double contrastRatio(const QColor& first, const QColor& second);

// One step smaller than the given font.
QFont secondaryFont(const QFont& font);

// Sets a label's text colour without touching the rest of its palette. The colour is kept as the
// label's own, so the owner reapplies it when the palette changes.
void setLabelColour(QLabel* label, const QColor& colour);

} // namespace corvane
