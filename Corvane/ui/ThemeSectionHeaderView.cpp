// SPDX-License-Identifier: MIT
#include "Corvane/ui/ThemeSectionHeaderView.h"

#include "Corvane/ui/SecondaryText.h"

#include <QEvent>
#include <QLabel>
#include <QVBoxLayout>

namespace corvane {

ThemeSectionHeaderView::ThemeSectionHeaderView(QWidget* parent) : QWidget(parent), m_title(new QLabel(this))
{
    setFocusPolicy(Qt::NoFocus);
    auto layout = new QVBoxLayout(this);
    // Rows are all one height: the title sits low, close to the rows it heads, with air above it.
    layout->setContentsMargins(14, 0, 14, 6);
    layout->addStretch();
    layout->addWidget(m_title);
    QFont font = m_title->font();
    font.setBold(true);
    m_title->setFont(font);
    m_title->setAccessibleName(QString());
    applyTextColour();
}

void ThemeSectionHeaderView::configure(const QString& title)
{
    m_title->setText(title);
}

void ThemeSectionHeaderView::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        applyTextColour();
}

void ThemeSectionHeaderView::applyTextColour()
{
    setLabelColour(m_title, secondaryTextColour(palette(), QPalette::Text));
}

} // namespace corvane
