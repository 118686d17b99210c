#include "UI/Base/Program/Private/ApplicationHost.h"

#include "Server/Base/HostSlot.h"

namespace Vu {
namespace {

Vs::HostSlot<ApplicationHost>& slot()
{
    static Vs::HostSlot<ApplicationHost> slot;
    return slot;
}

} // namespace

ApplicationHost* ApplicationHost::get()
{
    return slot().get();
}

void ApplicationHost::install(ApplicationHost* host)
{
    slot().install(host);
}

} // namespace Vu
