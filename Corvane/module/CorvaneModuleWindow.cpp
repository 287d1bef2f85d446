// SPDX-License-Identifier: MIT
// The module's window lives in Corvane::Widgets; a host that links the core alone has no corvane().
#include "Corvane/module/CorvaneModule.h"

#include "Corvane/module/CorvaneWireframe.h"

namespace corvane {

std::unique_ptr<UpdatesThemes> CorvaneModule::corvane(QWidget* parent, QSettings* frameSettings) const
{
    return CorvaneWireframe::create(m_configuration, parent, frameSettings);
}

} // namespace corvane
