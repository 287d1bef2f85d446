// SPDX-License-Identifier: MIT
#include "Corvane/module/RepositoryCheckHandle.h"

#include "Corvane/module/RepositoryCheckState.h"

namespace corvane {

RepositoryCheckHandle::RepositoryCheckHandle(std::shared_ptr<State> state) : m_state(std::move(state)) {}

void RepositoryCheckHandle::cancel()
{
    m_state->cancelled = true;
}

bool RepositoryCheckHandle::isCancelled() const
{
    return m_state->cancelled || (m_state->hasContext && !m_state->context);
}

bool RepositoryCheckHandle::isAnswered() const
{
    return m_state->answered;
}

} // namespace corvane
