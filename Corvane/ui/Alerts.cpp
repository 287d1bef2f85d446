// SPDX-License-Identifier: MIT
#include "Corvane/ui/Alerts.h"

#include "Corvane/module/Localized.h"
#include "Corvane/ui/AlertDialog.h"
#include "Corvane/ui/AlertWindowScope.h"
#include "Corvane/presentation/CopyingThemeFailed.h"

#include <QApplication>
#include <QFontMetrics>
#include <QLabel>
#include <QPushButton>

namespace corvane {
namespace {

constexpr int detailMaximumWidth = 300;
constexpr int detailMaximumHeight = 200;

struct AlertTexts {
    QString title;
    QString message;
    QString firstButton;
    QString secondButton;
};

// Builds, runs and answers one alert; true when the first button was chosen.
bool runAlert(const AlertTexts& texts, QWidget* detail)
{
    // Transient for and centred over the window the alert belongs to; a caller outside any window's
    // scope gets the active one.
    QWidget* owner = AlertWindowScope::current();
    AlertDialog alert(owner ? owner : QApplication::activeWindow());
    alert.setTitle(texts.title);
    alert.setMessage(texts.message);
    if (detail)
        alert.setAccessoryView(detail);
    alert.addButton(texts.firstButton);
    alert.addButton(texts.secondButton);
    return alert.runModal() == AlertDialog::firstButton;
}

} // namespace

bool showFetchFailedAlert(const AnyError& error)
{
    AlertTexts texts;
    //% "Update Error"
    texts.title = localizedString(QT_TRID_NOOP("corvane.fetch-failed.title"), "Update Error");
    //% "Themes from the server could not be updated."
    texts.message = localizedString(QT_TRID_NOOP("corvane.fetch-failed.message"),
                                    "Themes from the server could not be updated.");
    //% "Ignore"
    texts.firstButton = localizedString(QT_TRID_NOOP("corvane.fetch-failed.close-updater"), "Ignore");
    //% "Retry"
    texts.secondButton = localizedString(QT_TRID_NOOP("corvane.fetch-failed.retry"), "Retry");
    return !runAlert(texts, makeErrorDetailField(error));
}

bool showCopyingFailedAlert(const QString& fileName, const AnyError& error)
{
    AlertTexts texts;
    //% "Copying Theme Failed"
    texts.title = localizedString(QT_TRID_NOOP("corvane.copying-failed.title"), "Copying Theme Failed");
    //% "The theme '%1' could not be copied. You can try to delete all local themes to start fresh."
    const QString format = localizedString(
        QT_TRID_NOOP("corvane.copying-failed.message"),
        "The theme '%1' could not be copied. You can try to delete all local themes to start fresh.");
    texts.message = fillPlaceholders(format, {fileName});
    //% "Continue"
    texts.firstButton = localizedString(QT_TRID_NOOP("corvane.copying-failed.continue"), "Continue");
    //% "Delete Local Themes"
    texts.secondButton = localizedString(QT_TRID_NOOP("corvane.copying-failed.resolve"), "Delete Local Themes");
    return runAlert(texts, makeErrorDetailField(CopyingThemeFailed{fileName, error}));
}

bool showDeletingLocalRepoFailedAlert()
{
    AlertTexts texts;
    //% "Deleting Local Theme Repository Failed"
    texts.title = localizedString(QT_TRID_NOOP("corvane.deleting-local-repo-failed.title"),
                                  "Deleting Local Theme Repository Failed");
    //% "Deleting the local copy of available themes failed. You can try to remove the directory manually and try again."
    texts.message = localizedString(QT_TRID_NOOP("corvane.deleting-local-repo-failed.message"),
                                    "Deleting the local copy of available themes failed. You can try to remove "
                                    "the directory manually and try again.");
    //% "Ignore"
    texts.firstButton = localizedString(QT_TRID_NOOP("corvane.deleting-local-repo-failed.continue"), "Ignore");
    //% "Show Directory"
    texts.secondButton = localizedString(QT_TRID_NOOP("corvane.deleting-local-repo-failed.resolve"), "Show Directory");
    return !runAlert(texts, nullptr);
}

bool showDeletingInstalledThemesFailedAlert()
{
    AlertTexts texts;
    //% "Deleting Local Theme Repository Failed"
    texts.title = localizedString(QT_TRID_NOOP("corvane.deleting-installed-themes-failed.title"),
                                  "Deleting Local Theme Repository Failed");
    //% "Removing installed themes failed. You can try to remove the directory manually and try again."
    texts.message = localizedString(QT_TRID_NOOP("corvane.deleting-installed-themes-failed.message"),
                                    "Removing installed themes failed. You can try to remove the directory "
                                    "manually and try again.");
    //% "Ignore"
    texts.firstButton = localizedString(QT_TRID_NOOP("corvane.deleting-installed-themes-failed.continue"), "Ignore");
    //% "Show Directory"
    texts.secondButton = localizedString(QT_TRID_NOOP("corvane.deleting-installed-themes-failed.resolve"),
                                         "Show Directory");
    return !runAlert(texts, nullptr);
}

bool showUndoFailedAlert(const AnyError& error)
{
    AlertTexts texts;
    //% "Undo Failed"
    texts.title = localizedString(QT_TRID_NOOP("corvane.undo-failed.title"), "Undo Failed");
    //% "The last install could not be undone."
    texts.message = localizedString(QT_TRID_NOOP("corvane.undo-failed.message"), "The last install could not be undone.");
    //% "OK"
    texts.firstButton = localizedString(QT_TRID_NOOP("corvane.undo-failed.continue"), "OK");
    //% "Open Theme Folder"
    texts.secondButton = localizedString(QT_TRID_NOOP("corvane.undo-failed.resolve"), "Open Theme Folder");
    return !runAlert(texts, makeErrorDetailField(error));
}

QLabel* makeErrorDetailField(const AnyError& error)
{
    auto field = new QLabel;
    field->setObjectName(QStringLiteral("errorDetailField"));
    field->setTextFormat(Qt::PlainText);
    field->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    field->setAutoFillBackground(false);
    field->setFrameShape(QFrame::NoFrame);
    field->setAlignment(Qt::AlignLeading | Qt::AlignTop);
    field->setWordWrap(true);

    QFont font = field->font();
    font.setPointSizeF(std::max(7.0, font.pointSizeF() - 1.5));
    field->setFont(font);

    // Secondary text: the label colour at reduced strength, so it stays legible in light and dark.
    QPalette palette = field->palette();
    QColor secondary = palette.color(QPalette::WindowText);
    secondary.setAlphaF(0.7);
    palette.setColor(QPalette::WindowText, secondary);
    field->setPalette(palette);

    const QString text = error.errorDescription();
    field->setText(text);

    // Sized to its text as laid out within 300 by 200 pixels; a longer text grows downward rather
    // than being cut.
    const QFontMetrics metrics(font);
    const QRect bounds = metrics.boundingRect(QRect(0, 0, detailMaximumWidth, detailMaximumHeight),
                                              Qt::TextWordWrap | Qt::TextWrapAnywhere, text);
    field->setFixedWidth(std::min(detailMaximumWidth, bounds.width() + 2));
    field->setMinimumHeight(field->heightForWidth(field->width()));
    return field;
}

} // namespace corvane
