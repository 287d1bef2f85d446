#include "Corvane/module/CorvaneWireframe.h"

namespace corvane {

// Placeholder until the window lands.
std::unique_ptr<CorvaneWireframe> CorvaneWireframe::create(const Configuration&)
{
    return std::make_unique<CorvaneWireframe>();
}

void CorvaneWireframe::show() {}
void CorvaneWireframe::close() {}
bool CorvaneWireframe::isVisible() const { return false; }

} // namespace corvane
