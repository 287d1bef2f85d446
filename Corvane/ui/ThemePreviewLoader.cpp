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
#include <deque>
#include <mutex>

namespace corvane {

// What the workers and the loader share: the provider, the files still to load (rows on screen, top
// first) and those being loaded. A few workers drain the queue; the loader replaces it as the rows move,
// so a worker is woken only when the queue had none left.
struct ThemePreviewLoader::Shared {
    std::shared_ptr<ProvidesThemePreviews> provider;
    QSize size;
    int maximumWorkers = 1;
    std::mutex mutex;
    std::deque<QString> queue;
    QSet<QString> running;
    int workers = 0;
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
    m_shared->maximumWorkers = std::clamp(QThread::idealThreadCount(), 1, 2);
    m_pool->setMaxThreadCount(m_shared->maximumWorkers);
}

ThemePreviewLoader::~ThemePreviewLoader()
{
    {
        const std::lock_guard guard(m_shared->mutex);
        m_shared->receiver = nullptr;
        m_shared->queue.clear();
    }
    m_pool->waitForDone();
}

void ThemePreviewLoader::want(const QStringList& paths)
{
    int toStart = 0;
    {
        const std::lock_guard guard(m_shared->mutex);
        m_shared->queue.clear();
        for (const QString& path : paths) {
            if (!m_cache.contains(path) && !m_shared->running.contains(path))
                m_shared->queue.push_back(path);
        }
        const int wanted = int(std::min<size_t>(m_shared->queue.size(), size_t(m_shared->maximumWorkers)));
        toStart = std::max(0, wanted - m_shared->workers);
        m_shared->workers += toStart;
    }
    for (int worker = 0; worker < toStart; ++worker)
        m_pool->start([shared = m_shared] { drain(*shared); });
}

void ThemePreviewLoader::drain(Shared& shared)
{
    std::unique_lock guard(shared.mutex);
    while (!shared.queue.empty()) {
        const QString path = std::move(shared.queue.front());
        shared.queue.pop_front();
        shared.running.insert(path);
        guard.unlock();
        const QImage image = finished(shared.provider->previewForThemeFile(path, shared.size), shared.size);
        guard.lock();
        shared.running.remove(path);
        // Posted while the loader is known to live; a loader deleted later drops the event.
        if (shared.receiver)
            QMetaObject::invokeMethod(shared.receiver, [receiver = shared.receiver, path, image] {
                receiver->arrived(path, image);
            }, Qt::QueuedConnection);
    }
    --shared.workers;
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
