#include "UI/Base/Workspace/Private/CanvasHost.h"

#include "Server/Base/HostSlot.h"

namespace Vu {
namespace {

Vs::HostSlot<CanvasHost>& slot()
{
    static Vs::HostSlot<CanvasHost> slot;
    return slot;
}

} // namespace

CanvasHost* CanvasHost::get()
{
    return slot().get();
}

void CanvasHost::install(CanvasHost* host)
{
    slot().install(host);
}

} // namespace Vu
