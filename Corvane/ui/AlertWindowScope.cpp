// SPDX-License-Identifier: MIT
#include "Corvane/ui/AlertWindowScope.h"

namespace corvane {
namespace {

QPointer<QWidget>& innermost()
{
    static QPointer<QWidget> window;
    return window;
}

} // namespace

AlertWindowScope::AlertWindowScope(QWidget* window) : m_previous(innermost())
{
    if (window)
        innermost() = window->window();
}

AlertWindowScope::~AlertWindowScope()
{
    innermost() = m_previous;
}

QWidget* AlertWindowScope::current()
{
    return innermost();
}

} // namespace corvane
