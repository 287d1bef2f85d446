// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractScrollArea>
#include <QPointer>
#include <QWidget>

#include <chrono>
#include <functional>

class QGraphicsOpacityEffect;
class QPropertyAnimation;

namespace corvane {

// What the two status overlays share: lying exactly over the list's scroll view whatever the window's
// size, and fading in and out. An overlay starts hidden and transparent; while it is transparent it
// lets the pointer through to the rows beneath.
class StatusOverlay : public QWidget {
    Q_OBJECT

public:
    static constexpr std::chrono::milliseconds fadeInDuration{700};
    static constexpr std::chrono::milliseconds fadeOutDuration{400};

    explicit StatusOverlay(QWidget* parent = nullptr);
    ~StatusOverlay() override;

    // Places the overlay over the scroll view, above its siblings, and keeps it there. Once only.
    void attach(QAbstractScrollArea* scrollView);
    QAbstractScrollArea* scrollView() const { return m_scrollView; }

    // 0.0 transparent, 1.0 opaque; the value the running fade has reached.
    qreal opacity() const;
    bool isFading() const;
    // Where the overlay is going: the running fade's end, or the opacity it rests at.
    qreal targetOpacity() const;

protected:
    // Starts from the current opacity; a newer fade replaces a running one, whose completion is then
    // dropped (what it would finish no longer holds).
    void fadeTo(qreal opacity, std::chrono::milliseconds duration, std::function<void()> completion = {});
    // Sets the opacity at once, stopping any fade.
    void setOpacity(qreal opacity);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void followScrollView();

    QGraphicsOpacityEffect* m_effect;
    QPropertyAnimation* m_animation;
    QPointer<QAbstractScrollArea> m_scrollView;
    quint64 m_fade = 0;
};

} // namespace corvane
