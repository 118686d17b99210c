#include "UI/Base/Command/Private/CommandHost.h"

#include "Server/Base/HostSlot.h"

namespace Vu {
namespace {

Vs::HostSlot<CommandHost>& slot()
{
    static Vs::HostSlot<CommandHost> slot;
    return slot;
}

} // namespace

CommandHost* CommandHost::get()
{
    return slot().get();
}

CommandHost* CommandHost::install(CommandHost* host)
{
    return slot().install(host);
}

} // namespace Vu
