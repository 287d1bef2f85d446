// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

namespace corvane {

// A plain opaque view that fills itself with the colour the list draws its background in; the
// overlays' forms use it so nothing of the list shows through while they are up.
class OpaqueView : public QWidget {
    Q_OBJECT

public:
    explicit OpaqueView(QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace corvane
