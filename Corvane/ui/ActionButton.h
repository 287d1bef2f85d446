// SPDX-License-Identifier: MIT
#pragma once

#include <QPushButton>

namespace corvane {

// The push button of the updater and its alerts. Enter and Return press it like Space, wherever it
// stands (a plain push button reacts to them only as a dialog's default); keyboard focus shows as a
// ring two pixels wide in the accent colour, unlike the default button's border; and its text keeps
// room at both ends in every language.
class ActionButton : public QPushButton {
    Q_OBJECT

public:
    explicit ActionButton(QWidget* parent = nullptr);
    explicit ActionButton(const QString& text, QWidget* parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

    // The width that fits each of the texts with its padding: rows whose buttons switch between
    // "Install" and "Update" keep one width.
    int widthForTexts(const QStringList& texts) const;

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    int paddedWidth(const QString& text) const;
};

} // namespace corvane
