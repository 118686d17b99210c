#include "UI/Commands/TimedCommand.h"

#include "Server/Base/Strings.h"

namespace Vu::Commands {

Vs::Metrics::TimeMetric* timeMetric(const char* name)
{
    return Vs::Metrics::TimeMetric::make(Vs::UniqueString::find(name, true), Vs::Strings::widen(name));
}

} // namespace Vu::Commands
