#pragma once

#include "Corvane/module/Configuration.h"
#include "Corvane/module/UpdatesThemes.h"

#include <memory>

namespace corvane {

// Builds the updater's object graph and keeps its top three objects alive.
class CorvaneWireframe : public UpdatesThemes {
public:
    static std::unique_ptr<CorvaneWireframe> create(const Configuration& configuration);

    void show() override;
    void close() override;
    bool isVisible() const override;
};

} // namespace corvane
