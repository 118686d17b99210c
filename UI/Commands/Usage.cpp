#include "UI/Commands/Usage.h"

#include "UI/Base/Program/UIBaseOptionGroup.h"

namespace Vu::Commands {

void sendUsage(ETerminationReason reason, const char* key)
{
    if (reason == ETerminationReason::Commit && UIBaseOptionGroup::get()->analytics())
        vuGA::gaCommandEvent(key);
}

} // namespace Vu::Commands
