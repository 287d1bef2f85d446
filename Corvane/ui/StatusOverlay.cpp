// SPDX-License-Identifier: MIT
#include "Corvane/ui/StatusOverlay.h"

#include <QAbstractScrollArea>
#include <QEvent>
#include <QGraphicsOpacityEffect>
#include <QPropertyAnimation>

namespace corvane {

StatusOverlay::StatusOverlay(QWidget* parent)
    : QWidget(parent)
    , m_effect(new QGraphicsOpacityEffect(this))
    , m_animation(new QPropertyAnimation(m_effect, "opacity", this))
{
    m_effect->setOpacity(0.0);
    setGraphicsEffect(m_effect);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setHidden(true);
}

StatusOverlay::~StatusOverlay() = default;

void StatusOverlay::attach(QAbstractScrollArea* scrollView)
{
    Q_ASSERT(scrollView && scrollView->parentWidget() && !m_scrollView);
    m_scrollView = scrollView;
    // Same parent as the scroll view, stacked above everything in it: an overlay is a sibling on top.
    setParent(scrollView->parentWidget());
    raise();
    scrollView->installEventFilter(this);
    followScrollView();
}

qreal StatusOverlay::opacity() const
{
    return m_effect->opacity();
}

bool StatusOverlay::isFading() const
{
    return m_animation->state() == QAbstractAnimation::Running;
}

qreal StatusOverlay::targetOpacity() const
{
    return isFading() ? m_animation->endValue().toReal() : m_effect->opacity();
}

void StatusOverlay::setOpacity(qreal opacity)
{
    ++m_fade;
    m_animation->stop();
    m_effect->setOpacity(opacity);
    setAttribute(Qt::WA_TransparentForMouseEvents, opacity <= 0.0);
}

void StatusOverlay::fadeTo(qreal opacity, std::chrono::milliseconds duration, std::function<void()> completion)
{
    const quint64 fade = ++m_fade;
    m_animation->stop();
    disconnect(m_animation, &QPropertyAnimation::finished, this, nullptr);
    // A fading-out overlay already lets the pointer through: the rows beneath are the point.
    setAttribute(Qt::WA_TransparentForMouseEvents, opacity <= 0.0);
    m_animation->setStartValue(m_effect->opacity());
    m_animation->setEndValue(opacity);
    m_animation->setDuration(int(duration.count()));
    connect(m_animation, &QPropertyAnimation::finished, this, [this, fade, opacity, completion = std::move(completion)] {
        if (fade != m_fade)
            return;
        // Fully transparent, the overlay steps out of the way entirely, so the list beneath scrolls
        // and paints as if it were not there.
        if (opacity <= 0.0)
            setHidden(true);
        if (completion)
            completion();
    });
    m_animation->start();
}

bool StatusOverlay::eventFilter(QObject* watched, QEvent* event)
{
    // The event type first: a scroll view being destroyed still sends events, and comparing it with
    // the guarded pointer would cast what is by then only a QWidget to a scroll area.
    switch (event->type()) {
    case QEvent::Move:
    case QEvent::Resize:
    case QEvent::Show:
        if (watched == m_scrollView)
            followScrollView();
        break;
    default:
        break;
    }
    return QWidget::eventFilter(watched, event);
}

void StatusOverlay::followScrollView()
{
    if (m_scrollView)
        setGeometry(m_scrollView->geometry());
}

} // namespace corvane
