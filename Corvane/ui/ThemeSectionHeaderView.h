// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

class QLabel;

namespace corvane {

// The header over a section of the updater list ("New (2)", "Updates (3)"): a row of its own kind,
// reused as theme cells are. It takes no focus, so Tab goes from the last row of one section to the
// first of the next.
class ThemeSectionHeaderView : public QWidget {
    Q_OBJECT

public:
    static inline const QString reuseIdentifier = QStringLiteral("SectionHeader");

    explicit ThemeSectionHeaderView(QWidget* parent = nullptr);

    void configure(const QString& title);
    QLabel* titleLabel() const { return m_title; }

protected:
    void changeEvent(QEvent* event) override;

private:
    void applyTextColour();

    QLabel* m_title;
};

} // namespace corvane
