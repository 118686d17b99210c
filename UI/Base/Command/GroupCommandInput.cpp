#include "UI/Base/Command/GroupCommandInput.h"

#include "UI/Base/Command/CommandInputSet.h"

namespace Vu {

GroupCommandInput* GroupCommandInput::make(CommandInputSet* set, int number, Info* info, bool opened)
{
    auto* group = new GroupCommandInput(set, number, info);
    group->enableTranscript(false);
    group->requiresExecution(false);
    group->value(opened);
    set->m_openGroup = group;
    return group;
}

void GroupCommandInput::end()
{
    for (const GroupCommandInput* open = commandInputSet()->m_openGroup; open; open = open->group())
        if (open == this) {
            commandInputSet()->m_openGroup = group();
            return;
        }
}

} // namespace Vu
