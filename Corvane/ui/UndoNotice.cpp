// SPDX-License-Identifier: MIT
#include "Corvane/ui/UndoNotice.h"

#include "Corvane/module/Localized.h"
#include "Corvane/ui/ElidedLabel.h"
#include "Corvane/ui/SecondaryText.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QPushButton>

namespace corvane {

UndoNotice::UndoNotice(QWidget* parent)
    : QFrame(parent)
    , m_text(new ElidedLabel(this))
    , m_undo(new QPushButton(this))
{
    setObjectName(QStringLiteral("undoNotice"));
    m_text->setObjectName(QStringLiteral("undoNoticeText"));
    m_text->setTextFormat(Qt::PlainText);
    m_undo->setObjectName(QStringLiteral("undoButton"));
    //% "Undo"
    m_undo->setText(localizedString(QT_TRID_NOOP("corvane.undo-notice.undo"), "Undo"));
    m_undo->setFlat(true);
    m_undo->setAutoDefault(false);
    m_undo->setCursor(Qt::PointingHandCursor);

    auto layout = new QHBoxLayout(this);
    layout->setContentsMargins(6, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_text, 1);
    layout->addWidget(m_undo);
    // A long count is shortened with "…" rather than pushing the buttons out of the bar.
    m_undo->setMaximumWidth(m_undo->fontMetrics().horizontalAdvance(m_undo->text()) + 24);
    applyColours();
    hide();

    connect(m_undo, &QPushButton::clicked, this, [this] {
        hide();
        emit undoRequested();
    });
}

QString UndoNotice::describe(const InstallBatchSummary& summary)
{
    if (summary.total() == 1 && !summary.themeName.isEmpty()) {
        if (summary.updated == 1) {
            //% "Updated %1"
            return fillPlaceholders(localizedString(QT_TRID_NOOP("corvane.undo-notice.updated-one"), "Updated %1"),
                                    {summary.themeName});
        }
        //% "Installed %1"
        return fillPlaceholders(localizedString(QT_TRID_NOOP("corvane.undo-notice.installed-one"), "Installed %1"),
                                {summary.themeName});
    }
    const double total = double(summary.total());
    if (summary.installed == 0) {
        //% "Updated %1 themes"
        return fillPlaceholders(localizedCountedString(QT_TRID_N_NOOP("corvane.undo-notice.updated-many"), total,
                                                       "Updated %1 theme", "Updated %1 themes"),
                                {localizedNumber(total)});
    }
    // New themes among updates: each was installed, the updates as new versions.
    //% "Installed %1 themes"
    return fillPlaceholders(localizedCountedString(QT_TRID_N_NOOP("corvane.undo-notice.installed-many"), total,
                                                   "Installed %1 theme", "Installed %1 themes"),
                            {localizedNumber(total)});
}

void UndoNotice::showFor(const InstallBatchSummary& summary)
{
    m_text->setText(describe(summary));
    show();
}

void UndoNotice::setUndoEnabled(bool enabled)
{
    m_undo->setEnabled(enabled);
}

void UndoNotice::changeEvent(QEvent* event)
{
    QFrame::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        applyColours();
}

void UndoNotice::applyColours()
{
    // Quiet: secondary text, and Undo in the accent colour, as a link would be.
    setLabelColour(m_text, secondaryTextColour(palette()));
    QPalette undoPalette = m_undo->palette();
    undoPalette.setColor(QPalette::ButtonText, legibleAccentColour(palette()));
    m_undo->setPalette(undoPalette);
}

} // namespace corvane
