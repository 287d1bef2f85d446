// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

namespace corvane {

// The three queues the module hands work between. Submission is always asynchronous: the work never
// runs inside the submitting call.

// A process-wide pool for repository checks, running at low thread priority.
void dispatchBackground(std::function<void()> work);

// A process-wide pool for work a user is waiting for (comparisons behind the window).
void dispatchUserInitiated(std::function<void()> work);

// The main thread's event loop (the application object's thread).
void dispatchMain(std::function<void()> work);

} // namespace corvane
