#include "UI/Base/Program/Notifications.h"
#include "UI/Base/Session/SessionEvents.h"
#include "UI/Base/View/CanvasEvents.h"
#include "UI/Base/View/InteractionEvents.h"
#include "UI/Base/View/Private/FrameEvents.h"
#include "UI/Base/View/SnapEvents.h"
#include "UI/Base/View/SplitViewEvents.h"
#include "UI/Base/Workspace/ShellEvents.h"
#include "UI/Base/Workspace/WorkspaceEvents.h"

// The sources outlive whatever listens to them: add-ins unsubscribe while the process goes down.

namespace Vu {

SessionEventSource* SessionEventSource::get()
{
    static auto* const source = new SessionEventSource;
    return source;
}

WorkspaceEventSource* WorkspaceEventSource::get()
{
    static auto* const source = new WorkspaceEventSource;
    return source;
}

ShellEventSource* ShellEventSource::get()
{
    static auto* const source = new ShellEventSource;
    return source;
}

SplitViewEventSource* SplitViewEventSource::get()
{
    static auto* const source = new SplitViewEventSource;
    return source;
}

CanvasEventSource* CanvasEventSource::get()
{
    static auto* const source = new CanvasEventSource;
    return source;
}

FrameEventSource* FrameEventSource::get()
{
    static auto* const source = new FrameEventSource;
    return source;
}

InteractionEventSource* InteractionEventSource::get()
{
    static auto* const source = new InteractionEventSource;
    return source;
}

Inference::SnapEventSource* Inference::SnapEventSource::get()
{
    static auto* const source = new SnapEventSource;
    return source;
}

const Vs::UniqueString* ISplitViewArrangement::interfaceId()
{
    static const Vs::UniqueString* const id = Vs::UniqueString::find("Vu::ISplitViewArrangement");
    return id;
}

} // namespace Vu

namespace Vs {

NotificationsEventSource* NotificationsEventSource::get()
{
    static auto* const source = new NotificationsEventSource;
    return source;
}

void NotificationsEventSource::fireNotified(const std::wstring& message)
{
    forEach([&](NotificationsEventSite* site) { site->notified(message); });
}

} // namespace Vs
