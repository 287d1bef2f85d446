// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/corvane_export.h"

#include <QObject>
#include <QStringList>

#include <memory>

namespace corvane {

class ProvidesThemePreviews; // Corvane/ui/ProvidesThemePreviews.h

// The updater window as the host sees it. Main thread only.
class CORVANE_EXPORT UpdatesThemes : public QObject {
    Q_OBJECT

public:
    ~UpdatesThemes() override;

    // Shows the window and starts loading its list; every call refreshes the list.
    virtual void show() = 0;
    // Closes the window; the updater stays as it is, and a later show() brings the same window back.
    virtual void close() = 0;
    // Whether the window exists and is on screen.
    virtual bool isVisible() const = 0;

    // Rows show their theme's preview from provider (see ProvidesThemePreviews); none shows none,
    // as without a call. May be called before or after show().
    virtual void setPreviewProvider(std::shared_ptr<ProvidesThemePreviews> provider);

signals:
    // After each install (a row's button, or Update All) that installed or updated anything: the paths
    // of the files written, in order. A batch that stopped at a failure reports what it wrote before it.
    void themesInstalled(const QStringList& files);
    // The user undid the last install from the window's notice: the paths of the files it touched
    // (those the batch wrote, now in the Trash, and those it had replaced, back in place).
    void installUndone(const QStringList& files);
    // The window was closed, by the user or by close().
    void closed();

protected:
    explicit UpdatesThemes(QObject* parent = nullptr);
};

} // namespace corvane
