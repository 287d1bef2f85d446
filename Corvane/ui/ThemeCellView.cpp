// SPDX-License-Identifier: MIT
#include "Corvane/ui/ThemeCellView.h"

#include "Corvane/module/Localized.h"
#include "Corvane/ui/ActionButton.h"
#include "Corvane/ui/SecondaryText.h"
#include "Corvane/ui/ThemePreviewView.h"
#include "Corvane/ui/VersionLabel.h"
#include "ui_ThemeCell.h"

#include <QEvent>

namespace corvane {
namespace {

QString installTitle()
{
    //: Install button label
    //% "Install"
    return localizedString(QT_TRID_NOOP("corvane.theme.install"), "Install");
}

QString updateTitle()
{
    //: Update button label
    //% "Update"
    return localizedString(QT_TRID_NOOP("corvane.theme.update"), "Update");
}

// A tooltip in lines of at most about sixty characters, broken between words, instead of one line
// across the screen: a list of a dozen authors stays readable.
QString wrappedToolTip(const QString& text)
{
    constexpr qsizetype lineLength = 60;
    QString wrapped;
    qsizetype lineStart = 0;
    for (const QString& word : text.split(u' ')) {
        if (wrapped.size() > lineStart && wrapped.size() - lineStart + 1 + word.size() > lineLength) {
            wrapped += u'\n';
            lineStart = wrapped.size();
        } else if (wrapped.size() > lineStart) {
            wrapped += u' ';
        }
        wrapped += word;
    }
    return wrapped;
}

} // namespace

ThemeCellView::ThemeCellView(QWidget* parent)
    : QWidget(parent), m_ui(std::make_unique<Ui::ThemeCell>()), m_preview(new ThemePreviewView(this))
{
    m_ui->setupUi(this);
    m_ui->cellLayout->insertWidget(0, m_preview, 0, Qt::AlignVCenter);
    m_preview->hide();
    m_ui->versionLabel->setParts(m_ui->fromVersionLabel, m_ui->arrow, m_ui->toVersionLabel);
    connect(m_ui->updateButton, &QPushButton::clicked, this, &ThemeCellView::updateTheme);

    QFont nameFont = m_ui->themeNameLabel->font();
    nameFont.setPointSizeF(nameFont.pointSizeF() + 1);
    m_ui->themeNameLabel->setFont(nameFont);
    for (QLabel* label : std::initializer_list<QLabel*>{m_ui->styleLabel, m_ui->authorsLabel})
        label->setFont(secondaryFont(label->font()));
    // The style reads as a quiet tag beside the authors.
    m_ui->styleLabel->setStyleSheet(QStringLiteral(
        "QLabel { border: 1px solid rgba(128, 128, 128, 110); border-radius: 4px; padding: 0px 5px; }"));
    applyTextColours();
    // One width for Install and Update in the language at hand, so the version column lines up.
    auto button = static_cast<ActionButton*>(m_ui->updateButton);
    button->setFixedWidth(button->widthForTexts({installTitle(), updateTitle()}));
}

ThemeCellView::~ThemeCellView() = default;

void ThemeCellView::configure(const ThemeEntry& entry, bool skipped)
{
    m_ui->themeNameLabel->setText(entry.name);
    if (skipped) {
        //% "Skipped"
        const QString mark = localizedString(QT_TRID_NOOP("corvane.theme.skipped"), "Skipped");
        m_ui->authorsLabel->setText(entry.authors.isEmpty() ? mark : mark + QStringLiteral(" · ") + entry.authors);
    } else {
        m_ui->authorsLabel->setText(entry.authors);
    }
    if (skipped != m_skipped) {
        m_skipped = skipped;
        applyTextColours();
    }
    m_ui->styleLabel->setText(entry.style);
    m_ui->versionLabel->configure(entry);

    QString title;
    QString accessibleFormat;
    if (entry.installedVersion) {
        title = updateTitle();
        //% "Update %1"
        accessibleFormat = localizedString(QT_TRID_NOOP("corvane.theme.update.accessible"), "Update %1");
    } else {
        title = installTitle();
        //% "Install %1"
        accessibleFormat = localizedString(QT_TRID_NOOP("corvane.theme.install.accessible"), "Install %1");
    }
    m_ui->updateButton->setText(title);
    m_ui->updateButton->setAccessibleName(fillPlaceholders(accessibleFormat, {entry.name}));
    m_ui->authorsLabel->setToolTip(wrappedToolTip(entry.authors));
    m_ui->themeNameLabel->setToolTip(wrappedToolTip(entry.name));
    m_copyCommand = entry.copyCommand;
}

void ThemeCellView::showPreview(bool shown, const QPixmap& pixmap)
{
    if (shown)
        m_preview->setPreview(pixmap);
    if (m_preview->isHidden() == shown)
        m_preview->setVisible(shown);
}

void ThemeCellView::updateTheme()
{
    auto delegate = qobject_cast<ThemeCellViewDelegate*>(m_delegate.data());
    // A cell never configured has nothing to install.
    if (!delegate || !m_copyCommand)
        return;
    delegate->installTheme(*m_copyCommand);
}

QLabel* ThemeCellView::themeNameLabel() const { return m_ui->themeNameLabel; }
QLabel* ThemeCellView::styleLabel() const { return m_ui->styleLabel; }
QLabel* ThemeCellView::authorsLabel() const { return m_ui->authorsLabel; }
VersionLabel* ThemeCellView::versionLabel() const { return m_ui->versionLabel; }
QPushButton* ThemeCellView::updateButton() const { return m_ui->updateButton; }

void ThemeCellView::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        applyTextColours();
}

void ThemeCellView::applyTextColours()
{
    // The list's background is the Base role: text on it uses Text, secondary text a weaker Text.
    const QPalette& base = palette();
    const QColor primary = base.color(QPalette::Text);
    const QColor secondary = secondaryTextColour(base, QPalette::Text);
    for (QLabel* label : std::initializer_list<QLabel*>{m_ui->themeNameLabel, m_ui->toVersionLabel})
        setLabelColour(label, m_skipped ? secondary : primary);
    for (QLabel* label : std::initializer_list<QLabel*>{m_ui->styleLabel, m_ui->authorsLabel, m_ui->fromVersionLabel, m_ui->arrow})
        setLabelColour(label, secondary);
}

} // namespace corvane
