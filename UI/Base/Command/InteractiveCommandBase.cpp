#include "UI/Base/Command/InteractiveCommandBase.h"

#include "UI/Base/Command/CommandInputSet.h"
#include "UI/Base/Command/KeyEvents.h"
#include "UI/Base/Command/Private/CommandHost.h"

namespace Vu {

const Vs::UniqueString* IKeyEventHandler::interfaceId()
{
    static const Vs::UniqueString* const id = Vs::UniqueString::find("Vu::IKeyEventHandler");
    return id;
}

GraphicsView* InteractiveCommandBase::graphicsView() const
{
    AssetSession* session = assetSession();
    return session ? CommandHost::get()->graphicsView(session) : nullptr;
}

bool InteractiveCommandBase::onFilterSelection(const Vs::StrongRef<Vs::Selection>&,
                                               const Vs::SelectionFilterContext*)
{
    return true;
}

void InteractiveCommandBase::onKeyPress(KeyEvent* event)
{
    if (event->keyCode() == kEscapeKey)
        destroy(ETerminationReason::Cancel);
}

// Escape gives up what the hand is doing before it gives up the command.
void InteractiveCommandBase::keyPress(KeyEvent* event)
{
    CommandInUse inUse(this);
    if (commandInputSet() && event->keyCode() == kEscapeKey)
        for (const auto& input : commandInputSet()->inputs())
            if (input->giveUp())
                return;
    onKeyPress(event);
}

void InteractiveCommandBase::keyRelease(KeyEvent* event)
{
    CommandInUse inUse(this);
    onKeyRelease(event);
}

} // namespace Vu
