// SPDX-License-Identifier: MIT
#pragma once

#include "Corvane/differences/ThemeDifference.h"
#include "Corvane/differences/ThemeDifferencesError.h"
#include "Corvane/module/Result.h"

#include <QList>

#include <functional>

namespace corvane {

using ThemeDifferencesResult = Result<QList<ThemeDifference>, ThemeDifferencesError>;

// Asks for the differences without blocking: the completion runs later, exactly once, on the main
// thread, never from within the call.
class FindsThemeDifferences {
public:
    virtual ~FindsThemeDifferences() = default;
    virtual void findDifferences(std::function<void(ThemeDifferencesResult)> completion) = 0;
};

} // namespace corvane
