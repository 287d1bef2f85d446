// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/presentation/ThemeEntry.h"

#include <QWidget>

class QLabel;

namespace corvane {

// The version change of a row: "1.2.0 → 1.10.0" for an update, just "2.0.0" for a new theme. Its
// three parts come from the cell's form.
class VersionLabel : public QWidget {
    Q_OBJECT

public:
    explicit VersionLabel(QWidget* parent = nullptr);

    // Connects the parts the form made (they are the form's, not made here).
    void setParts(QLabel* fromVersionLabel, QWidget* arrow, QLabel* toVersionLabel);

    void configure(const ThemeEntry& entry);

    QLabel* fromVersionLabel() const { return m_fromVersionLabel; }
    QWidget* arrow() const { return m_arrow; }
    QLabel* toVersionLabel() const { return m_toVersionLabel; }

private:
    QLabel* m_fromVersionLabel = nullptr;
    QWidget* m_arrow = nullptr;
    QLabel* m_toVersionLabel = nullptr;
};

} // namespace corvane
