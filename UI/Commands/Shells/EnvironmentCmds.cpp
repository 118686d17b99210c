#include "UI/Commands/Shells/EnvironmentCmds.h"

#include "Server/DataModel/DocumentMgr.h"
#include "UI/Base/Command/InputControl.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/Environment.h"
#include "UI/Base/Session/SessionMgr.h"
#include "UI/Commands/Resources.h"
#include "UI/Commands/Shells/AssetShell.h"
#include "UI/Commands/Shells/SharedWorkflows.h"

#include <algorithm>

namespace Vu::Commands {

// clang-format off
constinit const CommandRow ActivateEnvironmentCmdDef::kRow = {
    .key = L"ActivateEnvironmentCommand", .title = "Workspace",
    .groups = {&CommandGroup::BaseGroup}, .readonly = true, .arguments = {L"EnvironmentType"}};

constinit const CommandRow CycleWorkspacesForwardCmdDef::kRow = {
    .key = L"CycleWorkspacesForwardCommand", .title = "Cycle Workspaces Forward", .icon = &Resources::Open,
    .groups = {&CommandGroup::DocumentGroup, &CommandGroup::BaseGroup}, .readonly = true};

constinit const CommandRow CycleWorkspacesBackwardCmdDef::kRow = {
    .key = L"CycleWorkspacesBackwardCommand", .title = "Cycle Workspaces Backward", .icon = &Resources::Open,
    .groups = {&CommandGroup::DocumentGroup, &CommandGroup::BaseGroup}, .readonly = true};

constinit const CommandRow ReturnToEnvironmentCmdDef::kRow = {
    .key = L"ReturnToEnvironmentCommand", .title = "Return To Previous Workspace", .icon = &Resources::Return,
    .groups = {&CommandGroup::BaseGroup}, .readonly = true};
// clang-format on

namespace {

/// How deep the program itself is in setting the list's selection, which must run no command. Shared by all
/// lists: an environment that one of them activates selects in the others.
int selecting = 0;

std::vector<EnvironmentDefinition*> applicableTo(const AssetSession* session)
{
    std::vector<EnvironmentDefinition*> applicable;
    for (EnvironmentDefinition* definition : EnvironmentDefinitionMgr::get()->definitions())
        if (definition->isApplicable(session))
            applicable.push_back(definition);
    return applicable;
}

/// Enters the environment that stands `step` places from the current session's one, around the ends.
void cycle(std::ptrdiff_t step)
{
    AssetSession* session = SessionMgr::get()->currentAssetSession();
    if (!session)
        return;
    const std::vector<EnvironmentDefinition*> environments = applicableTo(session);
    const auto active = std::find(environments.begin(), environments.end(), session->activeEnvironment());
    if (active == environments.end())
        return;
    const std::ptrdiff_t count = std::ssize(environments);
    const std::ptrdiff_t next = (active - environments.begin() + step + count) % count;
    session->activateEnvironment(environments[static_cast<size_t>(next)], false);
}

} // namespace

ActivateEnvironmentCmdDef::ActivateEnvironmentCmdDef()
{
    m_subscriptions.add(SessionEventSource::get(), this);
}

ActivateEnvironmentCmdDef::~ActivateEnvironmentCmdDef() = default;

const Vs::UniqueString* ActivateEnvironmentCmdDef::environmentTypeArgumentName()
{
    static const Vs::UniqueString* const name = Vs::UniqueString::find("EnvironmentType", true);
    return name;
}

bool ActivateEnvironmentCmdDef::onIsApplicable(CommandContext*) const
{
    return true;
}

InputControl* ActivateEnvironmentCmdDef::onInputControl()
{
    if (!m_control) {
        m_control.reset(ListControl::make(info(), this));
        updateListControl(SessionMgr::get()->currentAssetSession());
    }
    return m_control.get();
}

void ActivateEnvironmentCmdDef::onListSelectionChanged(Info* item)
{
    if (selecting > 0 || !item)
        return;
    CommandContext context = CommandContext::activeContext();
    context.addArgument(environmentTypeArgumentName(), item->key());
    executeLater(context);
}

void ActivateEnvironmentCmdDef::currentSessionChanged(SessionEvent* event)
{
    updateListControl(event->assetSession());
}

void ActivateEnvironmentCmdDef::sessionPostActivateForAsset(SessionEvent* event)
{
    updateListControl(event->assetSession());
}

void ActivateEnvironmentCmdDef::environmentActivated(EnvironmentEvent* event)
{
    // The list is that of the current session, whatever happens to others. One that applies only while it is
    // entered comes and goes.
    if (event->timing() == Vs::Timing::Notification &&
        event->assetSession() == SessionMgr::get()->currentAssetSession())
        updateListControl(event->assetSession());
}

void ActivateEnvironmentCmdDef::updateListControl(const AssetSession* session)
{
    if (!m_control)
        return;
    std::vector<Info*> items;
    for (const EnvironmentDefinition* environment : applicableTo(session))
        items.push_back(itemOf(environment));
    m_control->items(std::move(items));
    updateActiveEnvironment(session ? session->activeEnvironment() : nullptr);
}

void ActivateEnvironmentCmdDef::updateActiveEnvironment(const EnvironmentDefinition* environment)
{
    if (!m_control)
        return;
    ++selecting;
    m_control->selectedItem(environment ? itemOf(environment) : nullptr, false);
    --selecting;
}

Info* ActivateEnvironmentCmdDef::itemOf(const EnvironmentDefinition* environment)
{
    for (const auto& item : m_items)
        if (item->key() == environment->id())
            return item.get();
    return m_items.emplace_back(std::make_unique<Info>(environment->id(), environment->name(), nullptr))
        .get();
}

ActivateEnvironmentCmd::ActivateEnvironmentCmd(ActivateEnvironmentCmdDef* definition, CommandContext* context)
    : Implements(definition, context)
{
    repeatable(false);
}

void ActivateEnvironmentCmd::onExecute(Vs::Status&)
{
    if (!Vs::DocumentMgr::get())
        return;
    const std::wstring id =
        commandContext()->argumentAsString(ActivateEnvironmentCmdDef::environmentTypeArgumentName());
    EnvironmentDefinition* environment =
        id.empty() ? nullptr : EnvironmentDefinitionMgr::get()->findEnvironmentDefinitionById(id);
    AssetSession* session = SessionMgr::get()->currentAssetSession();
    if (environment && session && session->activeEnvironment() != environment)
        session->activateEnvironment(environment, false);
}

CycleWorkspacesForwardCmd::CycleWorkspacesForwardCmd(CycleWorkspacesForwardCmdDef* definition,
                                                     CommandContext* context)
    : Implements(definition, context)
{
    repeatable(false);
}

void CycleWorkspacesForwardCmd::onExecute(Vs::Status&)
{
    cycle(1);
}

CycleWorkspacesBackwardCmd::CycleWorkspacesBackwardCmd(CycleWorkspacesBackwardCmdDef* definition,
                                                       CommandContext* context)
    : Implements(definition, context)
{
    repeatable(false);
}

void CycleWorkspacesBackwardCmd::onExecute(Vs::Status&)
{
    cycle(-1);
}

bool ReturnToEnvironmentCmdDef::onIsApplicable(CommandContext* context) const
{
    const AssetSession* session = context->assetSession();
    const EnvironmentState* state = session ? session->activeEnvironmentState() : nullptr;
    return state && state->returnState();
}

ReturnToEnvironmentCmd::ReturnToEnvironmentCmd(ReturnToEnvironmentCmdDef* definition, CommandContext* context)
    : Implements(definition, context)
{
    repeatable(false);
}

void ReturnToEnvironmentCmd::onExecute(Vs::Status&)
{
    const AssetSession* session = commandContext()->assetSession();
    AssetShell* shell = SharedWorkflows::activeAssetShell();
    if (session && shell)
        shell->seamlessReturn(session->activeEnvironmentState());
}

} // namespace Vu::Commands
