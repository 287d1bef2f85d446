// SPDX-License-Identifier: MIT
#pragma once

#include <QLabel>

namespace corvane {

// A one-line label that ends in "…" when its text is wider than the label, instead of being cut
// through a letter. The whole text stays its text (for accessibility and copying); only the drawing
// is shortened.
class ElidedLabel : public QLabel {
    Q_OBJECT

public:
    explicit ElidedLabel(QWidget* parent = nullptr);

    // The text as drawn at the label's current width.
    QString shownText() const;

    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace corvane
