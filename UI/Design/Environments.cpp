#include "UI/Design/Environments.h"

#include "UI/Base/Session/AssetSession.h"
#include "UI/Design/Localized.h"

namespace Vu::Design {

ModellingEnvironment::ModellingEnvironment() : Implements(kId, localized("ModellingEnvironment", "Modelling"))
{
}

ReviewEnvironment::ReviewEnvironment() : Implements(kId, localized("ReviewEnvironment", "Review")) {}

ComponentEnvironment::ComponentEnvironment() : Implements(kId, localized("ComponentEnvironment", "Component"))
{
}

bool ComponentEnvironment::onIsApplicable(const AssetSession* session) const
{
    const EnvironmentState* state = session->activeEnvironmentState();
    while (state && state->environmentDefinition() != this)
        state = state->returnState();
    return state != nullptr;
}

Environments::Environments()
{
    m_subscriptions.add(SessionEventSource::get(), this);
}

void Environments::sessionCreated(SessionEvent* event)
{
    if (!event->assetSession()->activeEnvironment())
        event->assetSession()->activateEnvironment(&m_modelling, false);
}

} // namespace Vu::Design
