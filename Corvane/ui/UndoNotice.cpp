// SPDX-License-Identifier: MIT
#include "Corvane/ui/UndoNotice.h"

#include "Corvane/module/Localized.h"
#include "Corvane/ui/SecondaryText.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QPushButton>

namespace corvane {

UndoNotice::UndoNotice(QWidget* parent)
    : QFrame(parent)
    , m_text(new QLabel(this))
    , m_undo(new QPushButton(this))
    , m_dismiss(new QPushButton(this))
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
    m_dismiss->setObjectName(QStringLiteral("dismissUndoButton"));
    m_dismiss->setText(QStringLiteral("×"));
    //% "Dismiss"
    m_dismiss->setAccessibleName(localizedString(QT_TRID_NOOP("corvane.undo-notice.dismiss"), "Dismiss"));
    m_dismiss->setToolTip(m_dismiss->accessibleName());
    m_dismiss->setFlat(true);
    m_dismiss->setAutoDefault(false);

    auto layout = new QHBoxLayout(this);
    layout->setContentsMargins(12, 0, 8, 6);
    layout->setSpacing(4);
    layout->addWidget(m_text, 1);
    layout->addWidget(m_undo);
    layout->addWidget(m_dismiss);
    applyColours();
    hide();

    connect(m_undo, &QPushButton::clicked, this, [this] {
        hide();
        emit undoRequested();
    });
    connect(m_dismiss, &QPushButton::clicked, this, &QWidget::hide);
}

QString UndoNotice::describe(const InstallBatchSummary& summary)
{
    if (summary.total() == 1 && !summary.themeName.isEmpty()) {
        if (summary.updated == 1) {
            //% "Updated %@"
            return fillPlaceholders(localizedString(QT_TRID_NOOP("corvane.undo-notice.updated-one"), "Updated %@"),
                                    {summary.themeName});
        }
        //% "Installed %@"
        return fillPlaceholders(localizedString(QT_TRID_NOOP("corvane.undo-notice.installed-one"), "Installed %@"),
                                {summary.themeName});
    }
    const QString count = QLocale().toString(summary.total());
    if (summary.installed == 0) {
        //% "Updated %@ themes"
        return fillPlaceholders(localizedString(QT_TRID_NOOP("corvane.undo-notice.updated-many"), "Updated %@ themes"),
                                {count});
    }
    if (summary.updated == 0) {
        //% "Installed %@ themes"
        return fillPlaceholders(
            localizedString(QT_TRID_NOOP("corvane.undo-notice.installed-many"), "Installed %@ themes"), {count});
    }
    //% "Installed or updated %@ themes"
    return fillPlaceholders(
        localizedString(QT_TRID_NOOP("corvane.undo-notice.mixed"), "Installed or updated %@ themes"), {count});
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
