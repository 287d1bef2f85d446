// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/differences/CopyCommand.h"
#include "Corvane/presentation/ThemeEntry.h"

#include <QObject>
#include <QPointer>
#include <QWidget>

#include <memory>
#include <optional>

class QLabel;
class QPushButton;

namespace Ui {
class ThemeCell;
}

namespace corvane {

class ThemePreviewView;
class VersionLabel;

// Who hears a row's Install/Update button: the list view controller.
class ThemeCellViewDelegate {
public:
    virtual ~ThemeCellViewDelegate() = default;
    virtual void installTheme(const CopyCommand& copyCommand) = 0;
};

} // namespace corvane

#define ThemeCellViewDelegate_iid "org.corvane.ThemeCellViewDelegate"
Q_DECLARE_INTERFACE(corvane::ThemeCellViewDelegate, ThemeCellViewDelegate_iid)

namespace corvane {

// One row of the updater list, made from the "ThemeCell" form and reused for whatever row scrolls in:
// each configure() sets every label, the button and the copy command anew.
class ThemeCellView : public QWidget {
    Q_OBJECT

public:
    static inline const QString reuseIdentifier = QStringLiteral("ThemeCell");

    explicit ThemeCellView(QWidget* parent = nullptr);
    ~ThemeCellView() override;

    // A skipped version (shown only on request) reads quieter and says it is skipped.
    void configure(const ThemeEntry& entry, bool skipped = false);
    bool isSkipped() const { return m_skipped; }
    // The preview at the row's left, when the host provides previews: a null pixmap shows the
    // placeholder. Hidden otherwise.
    void showPreview(bool shown, const QPixmap& pixmap = {});

    // Held weakly; an object implementing ThemeCellViewDelegate.
    void setDelegate(QObject* delegate) { m_delegate = delegate; }
    QObject* delegate() const { return m_delegate; }

    const std::optional<CopyCommand>& copyCommand() const { return m_copyCommand; }

    QLabel* themeNameLabel() const;
    QLabel* styleLabel() const;
    QLabel* authorsLabel() const;
    VersionLabel* versionLabel() const;
    QPushButton* updateButton() const;
    ThemePreviewView* previewView() const { return m_preview; }

public slots:
    // The button's action: hands the row's copy command to the delegate.
    void updateTheme();

protected:
    void changeEvent(QEvent* event) override;

private:
    void applyTextColours();

    std::unique_ptr<Ui::ThemeCell> m_ui;
    QPointer<QObject> m_delegate;
    std::optional<CopyCommand> m_copyCommand;
    bool m_skipped = false;
    ThemePreviewView* m_preview;
};

} // namespace corvane
