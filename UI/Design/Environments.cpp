#include "UI/Design/Environments.h"

#include "UI/Base/Session/AssetSession.h"
#include "UI/Design/Localized.h"

namespace Vu::Design {

ModellingEnvironment::ModellingEnvironment() : Implements(kId, localized("ModellingEnvironment", "Modelling"))
{
}

ReviewEnvironment::ReviewEnvironment() : Implements(kId, localized("ReviewEnvironment", "Review")) {}

Environments::Environments()
{
    SessionEventSource::get()->subscribe(this);
}

Environments::~Environments()
{
    SessionEventSource::get()->unsubscribe(this);
}

void Environments::sessionCreated(SessionEvent* event)
{
    if (!event->assetSession()->activeEnvironment())
        event->assetSession()->activateEnvironment(&m_modelling, false);
}

} // namespace Vu::Design
