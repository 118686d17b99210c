#include "Server/Scene/Segment.h"

#include "Server/Base/Require.h"

#include <map>
#include <memory>

namespace Vs {

Segment* Segment::makeTransientStandalone(const char* name)
{
    assertMainThread();
    // Never freed: static views may still refer to them at the very end.
    static auto* const segments = new std::map<std::string, std::unique_ptr<Segment>>;
    std::unique_ptr<Segment>& segment = (*segments)[name];
    if (!segment)
        segment = std::make_unique<Segment>(name, true);
    return segment.get();
}

} // namespace Vs
