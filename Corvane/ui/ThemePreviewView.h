// SPDX-License-Identifier: MIT
#pragma once

#include <QPixmap>
#include <QWidget>

namespace corvane {

// The small picture at a row's left: the theme's preview, or a quiet placeholder while there is none.
// Painted directly, so handing a reused row another picture costs no style work.
class ThemePreviewView : public QWidget {
    Q_OBJECT

public:
    // The size every preview is asked for and shown at.
    static constexpr QSize previewSize{52, 34};

    explicit ThemePreviewView(QWidget* parent = nullptr);

    // A null pixmap shows the placeholder.
    void setPreview(const QPixmap& pixmap);
    bool hasPreview() const { return !m_pixmap.isNull(); }

    QSize sizeHint() const override { return previewSize; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QPixmap m_pixmap;
};

} // namespace corvane
