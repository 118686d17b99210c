#include "UI/Commands/Selection/SelectCmd.h"

#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Selection/SelectionMgr.h"
#include "UI/Base/Command/CommandInputSet.h"
#include "UI/Base/Command/KeyEvents.h"
#include "UI/Base/Session/ActiveAssetUtils.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/SelectionCommandInput.h"
#include "UI/Base/View/GraphicsView.h"
#include "UI/Commands/Localized.h"
#include "UI/Commands/Resources.h"
#include "UI/Commands/Selection/SmartBodies.h"
#include "UI/Commands/WaitCursor.h"

namespace Vu::Commands {
namespace {

constexpr CommandRow kRow = {.key = L"SelectCommand", .title = "Select", .icon = &Resources::Cursor};

constexpr MouseEventSource::Operation kRecordedOperations[] = {
    &MouseEventSource::fireMouseDown, &MouseEventSource::fireMouseUp, &MouseEventSource::fireMouseMove};

Info* inputInfo()
{
    static Info record(L"SelectionInput", localized("SelectionInput", "Selection"), nullptr);
    return &record;
}

} // namespace

Info* SelectCmdDef::info()
{
    static Info record = makeInfo(kRow);
    return &record;
}

SelectCmdDef::SelectCmdDef() : SelectCmdDef(info())
{
    joinCommandGroup(CommandGroup::BaseGroup());
    readonly(true);
    reportable(false);
}

SelectCmdDef::SelectCmdDef(Info* identity) : Implements(identity)
{
    joinCommandGroup(CommandGroup::SelectGroup());
}

bool SelectCmdDef::onIsApplicable(CommandContext* context) const
{
    return hasAssetSession(context);
}

CommandBase* SelectCmdDef::onCreateCommand(CommandContext* context)
{
    return new SelectCmd(this, context);
}

SelectCmd::SelectCmd(SelectCmdDef* definition, CommandContext* context) : Implements(definition, context)
{
    CommandInputSet* inputs = CommandInputSet::make(this);
    m_selectionInput = SelectionCommandInput::make(inputs, 0, inputInfo());
    m_selectionInput->replacesCurrentSelection(true);
    m_selectionInput->clearSelectionOnCommandEnd(false);
    repeatable(false);
    usesCommandDialog(false);
    commandInputSet(inputs);
}

SelectCmd::~SelectCmd()
{
    MouseEventSource::get()->unsubscribe(this);
}

bool SelectCmd::IsNeedToRecordMouseEvent() const
{
    const auto* definition = Vs::cast<SelectCmdDef>(commandDefinition());
    return definition && definition->recordMouseEvent();
}

void SelectCmd::onActivate()
{
    InteractiveCommandBase::onActivate();
    if (const GraphicsView* view = graphicsView())
        view->restartHighlighting();
    MouseEventSource* mouse = MouseEventSource::get();
    mouse->subscribe(this);
    if (IsNeedToRecordMouseEvent() && mouse->revalidateTranscriptRecordStatus())
        for (const MouseEventSource::Operation operation : kRecordedOperations)
            mouse->transcriptSubscribe(operation);
}

void SelectCmd::onDeactivate()
{
    MouseEventSource* mouse = MouseEventSource::get();
    mouse->unsubscribe(this);
    if (IsNeedToRecordMouseEvent() && mouse->revalidateTranscriptRecordStatus())
        for (const MouseEventSource::Operation operation : kRecordedOperations)
            mouse->transcriptUnsubscribe(operation);
    InteractiveCommandBase::onDeactivate();
}

// There is no tool to leave.
void SelectCmd::onKeyPress(KeyEvent* event)
{
    if (event->keyCode() == kEscapeKey)
        m_selectionInput->clear();
    else
        InteractiveCommandBase::onKeyPress(event);
}

// Whatever other keys are held.
void SelectCmd::onKeyRelease(KeyEvent* event)
{
    if (event->keyCode() != 'S' || !assetSession())
        return;
    Vs::SelectionSet* highlighted = ActiveAssetUtils::highlightSet();
    if (!highlighted)
        return;
    Vs::Asset* asset = assetSession()->asset();
    const WaitCursor wait; // The exact shapes may have to be read first.
    std::vector<Vs::StrongRef<Vs::Selection>> smart;
    for (const Vs::ObjectPath& body : smartBodies(*asset))
        smart.emplace_back(new Vs::LogicalSelection(asset, body, Vs::StrongRef<Vs::Selection>()));
    highlighted->replace(smart);
}

} // namespace Vu::Commands
