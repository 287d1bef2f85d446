// SPDX-License-Identifier: MIT
#pragma once

#include <QPointer>
#include <QWidget>

namespace corvane {

// Names the window the alerts raised while the scope lives belong to: they are transient for it and
// centred over it, whichever window the desktop holds active at that moment. Scopes nest; main thread
// only.
class AlertWindowScope {
public:
    explicit AlertWindowScope(QWidget* window);
    ~AlertWindowScope();

    AlertWindowScope(const AlertWindowScope&) = delete;
    AlertWindowScope& operator=(const AlertWindowScope&) = delete;

    // The innermost scope's window, or none.
    static QWidget* current();

private:
    QPointer<QWidget> m_previous;
};

} // namespace corvane
