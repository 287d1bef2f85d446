// SPDX-License-Identifier: MIT
#include "Corvane/ui/ThemePreviewLoader.h"

#include "Corvane/ui/ProvidesThemePreviews.h"

#include <QImage>
#include <QMetaObject>
#include <QPainter>
#include <QPainterPath>
#include <QSet>
#include <QThreadPool>

#include <algorithm>
#include <mutex>

namespace corvane {

// What the workers and the loader share: the provider, the files wanted now, and those queued or
// being loaded, so a file is never asked for twice at once.
struct ThemePreviewLoader::Shared {
    std::shared_ptr<ProvidesThemePreviews> provider;
    QSize size;
    std::mutex mutex;
    QSet<QString> wanted;
    QSet<QString> queued;
    QSet<QString> running;
    ThemePreviewLoader* receiver = nullptr; // cleared when the loader goes
};

namespace {

// Scaled to fit and with rounded corners, on the worker: all the main thread does then is draw it.
QImage finished(const QImage& image, QSize size)
{
    if (image.isNull())
        return {};
    const QImage fitted = image.width() > size.width() || image.height() > size.height()
        ? image.scaled(size, Qt::KeepAspectRatio, Qt::SmoothTransformation)
        : image;
    QImage rounded(fitted.size(), QImage::Format_ARGB32_Premultiplied);
    rounded.fill(Qt::transparent);
    QPainter painter(&rounded);
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath outline;
    outline.addRoundedRect(QRectF(rounded.rect()), ThemePreviewLoader::cornerRadius, ThemePreviewLoader::cornerRadius);
    painter.setClipPath(outline);
    painter.drawImage(0, 0, fitted);
    return rounded;
}

} // namespace

ThemePreviewLoader::ThemePreviewLoader(std::shared_ptr<ProvidesThemePreviews> provider, QSize size, QObject* parent)
    : QObject(parent), m_shared(std::make_shared<Shared>()), m_pool(std::make_unique<QThreadPool>())
{
    m_shared->provider = std::move(provider);
    m_shared->size = size;
    m_shared->receiver = this;
    // Two workers keep a slow provider from holding the screen up without crowding out the host.
    m_pool->setMaxThreadCount(std::clamp(QThread::idealThreadCount(), 1, 2));
}

ThemePreviewLoader::~ThemePreviewLoader()
{
    {
        const std::lock_guard guard(m_shared->mutex);
        m_shared->receiver = nullptr;
        m_shared->wanted.clear();
    }
    m_pool->clear();
    m_pool->waitForDone();
}

void ThemePreviewLoader::want(const QStringList& paths)
{
    m_pool->clear();
    QStringList toLoad;
    {
        const std::lock_guard guard(m_shared->mutex);
        m_shared->wanted = QSet<QString>(paths.cbegin(), paths.cend());
        m_shared->queued.clear();
        for (const QString& path : paths) {
            if (m_cache.contains(path) || m_shared->running.contains(path) || m_shared->queued.contains(path))
                continue;
            m_shared->queued.insert(path);
            toLoad.append(path);
        }
    }
    for (const QString& path : std::as_const(toLoad)) {
        m_pool->start([shared = m_shared, path] {
            {
                const std::lock_guard guard(shared->mutex);
                // Dropped from the queue or scrolled away meanwhile.
                if (!shared->queued.remove(path) || !shared->wanted.contains(path))
                    return;
                shared->running.insert(path);
            }
            const QImage image = finished(shared->provider->previewForThemeFile(path, shared->size), shared->size);
            const std::lock_guard guard(shared->mutex);
            shared->running.remove(path);
            // Posted while the loader is known to live; a loader deleted later drops the event.
            if (shared->receiver)
                QMetaObject::invokeMethod(shared->receiver, [receiver = shared->receiver, path, image] {
                    receiver->arrived(path, image);
                }, Qt::QueuedConnection);
        });
    }
}

void ThemePreviewLoader::arrived(const QString& path, const QImage& image)
{
    m_cache.insert(path, new QPixmap(image.isNull() ? QPixmap() : QPixmap::fromImage(image)));
    emit previewReady(path);
}

void ThemePreviewLoader::waitForIdle()
{
    m_pool->waitForDone();
}

} // namespace corvane
