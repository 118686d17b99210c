#include "UI/Base/Command/CommandDialog.h"

#include "UI/Base/Command/CommandEvents.h"

#include <utility>

namespace Vu {

void CommandDialog::show(bool value)
{
    if (std::exchange(m_shown, value) != value)
        CommandEventSource::get()->fireCommandAvailabilitiesChanged();
}

} // namespace Vu
