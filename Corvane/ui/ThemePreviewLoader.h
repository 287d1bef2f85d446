// SPDX-License-Identifier: MIT
#pragma once

#include <QCache>
#include <QObject>
#include <QPixmap>
#include <QSize>
#include <QStringList>

#include <memory>

class QThreadPool;

namespace corvane {

class ProvidesThemePreviews;

// Loads the previews of the rows on screen through the host's provider, on a small pool of worker
// threads, and keeps the latest ones. A row that scrolls away before its turn is never asked for:
// each want() replaces what is queued with the rows wanted now. Main thread only.
class ThemePreviewLoader : public QObject {
    Q_OBJECT

public:
    // Enough for several screenfuls in each direction; a preview is a few kilobytes.
    static constexpr int cachedPreviews = 600;
    // The previews arrive with their corners rounded to this radius.
    static constexpr qreal cornerRadius = 4;

    ThemePreviewLoader(std::shared_ptr<ProvidesThemePreviews> provider, QSize size, QObject* parent = nullptr);
    // Waits for the provider calls under way; queued ones are dropped.
    ~ThemePreviewLoader() override;

    // The preview of a theme file if it arrived (a null pixmap when the provider had none); nullptr
    // while it has not.
    const QPixmap* cached(const QString& path) const { return m_cache.object(path); }

    // The theme files of the rows on screen, top first: those not loaded yet are loaded in that order,
    // and whatever was queued for other files is dropped.
    void want(const QStringList& paths);

    // Waits until nothing is queued or running (for tests and benchmarks).
    void waitForIdle();

signals:
    // A preview arrived and is cached.
    void previewReady(const QString& path);

private:
    struct Shared;

    void arrived(const QString& path, const QImage& image);
    // A worker: loads the queued files, one after the other, until none is left.
    static void drain(Shared& shared);

    std::shared_ptr<Shared> m_shared;
    std::unique_ptr<QThreadPool> m_pool;
    QCache<QString, QPixmap> m_cache{cachedPreviews};
};

} // namespace corvane
