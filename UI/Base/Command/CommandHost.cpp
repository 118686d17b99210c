#include "UI/Base/Command/CommandHost.h"

namespace Vu {

namespace {

CommandHost* emptyHost()
{
    static CommandHost host;
    return &host;
}

CommandHost*& installed()
{
    static CommandHost* host = emptyHost();
    return host;
}

} // namespace

CommandHost* CommandHost::get()
{
    return installed();
}

CommandHost* CommandHost::install(CommandHost* host)
{
    CommandHost* before = installed();
    installed() = host ? host : emptyHost();
    return before;
}

} // namespace Vu
