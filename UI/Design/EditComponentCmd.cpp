#include "UI/Design/EditComponentCmd.h"

#include "Server/Component/ComponentIds.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Selection/PathQueries.h"
#include "Server/DataModel/Selection/SelectionMgr.h"
#include "Server/Scene/SceneAssetAdapter.h"
#include "UI/Base/Command/CommandBase.h"
#include "UI/Base/Command/CommandDefinitionMgr.h"
#include "UI/Base/Command/CommandGroup.h"
#include "UI/Base/Command/SimpleCommand.h"
#include "UI/Base/Command/TranscriptedCommandTextCommand.h"
#include "UI/Base/Session/AssetGraphicsView.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/View/SceneEvaluator.h"
#include "UI/Design/Environments.h"
#include "UI/Design/Localized.h"

#include <optional>

namespace Vu::Design {
namespace {

/// Nothing if none, or several, are selected.
std::optional<Vs::ObjectPath> selectedComponent(const AssetSession& session)
{
    const auto& selections = session.selectionManager()->selectionSet().selections();
    const auto* only =
        selections.size() == 1 ? Vs::cast<Vs::LogicalSelection>(selections.front().get()) : nullptr;
    return only && !only->componentId().empty() && session.asset()->findComponent(only->componentId())
               ? std::optional(only->path())
               : std::nullopt;
}

/// Leaves the environments that don't contain the component, and enters it unless that has been done already.
void enter(AssetSession& session, const std::string& component)
{
    EnvironmentDefinition* const environment =
        EnvironmentDefinitionMgr::get()->findEnvironmentDefinitionById(ComponentEnvironment::kId);
    while (!Vs::isWithin(component, session.editedComponent()))
        session.leaveEnvironment();
    if (session.editedComponent() != component)
        session.enterComponent(environment, component);
}

class EditComponentCmd : public Vs::Implements<EditComponentCmd, SimpleCommand>
{
public:
    EditComponentCmd(CommandDefinition* definition, CommandContext* context) : Implements(definition, context)
    {
        repeatable(false);
    }

protected:
    void onExecute(Vs::Status& status) override
    {
        const Vs::Asset* asset = commandContext()->asset();
        if (!asset || !assetSession()) {
            status.addError(
                localized("NoDesignToEditIn", "There is no active design to edit a component of."));
            return;
        }
        const std::wstring named =
            commandContext()->argumentAsString(EditComponentCmdDef::componentArgumentName());
        const auto path =
            named.empty() ? selectedComponent(*assetSession()) : Vs::findPath(*asset, named, status);
        if (path)
            enter(*assetSession(), path->component);
        else if (status.isOk())
            status.addError(localized("NoComponentToEdit", "Name one component to edit, or select one."));
    }
};

class TextCmdEditComponent : public Vs::PythonEntry<TextCmdEditComponent, TranscriptedCommandTextCommand>
{
public:
    TextCmdEditComponent()
        : PythonEntry(L"Design", L"Edit",
                      L"[<path>] Enters the component, or the one that is selected: what is made goes into "
                      L"it, until VuCommands.ReturnToEnvironmentCmd leaves it",
                      "%s", false, L"EditComponentCommand")
    {
    }

protected:
    void fillContext(const Vs::TextCommandParameters& parameters, CommandContext& context) override
    {
        if (parameters.parameters() > 0)
            context.addArgument(EditComponentCmdDef::componentArgumentName(), parameters[0]);
    }
};

TextCmdEditComponent theEdit;

/// The component of the body under the mouse; empty beside all bodies, and in a view of another model.
std::string componentUnder(const MouseEvent& event, const AssetSession& session)
{
    SceneEvaluator* evaluator = SceneEvaluator::get(event.position());
    const auto* view = evaluator ? Vs::cast<AssetGraphicsView>(evaluator->view()) : nullptr;
    const auto* scene = Vs::cast<Vs::Scene::SceneAssetAdapter>(session.asset()->adapter());
    const Vs::Scene::SceneSelection* picked =
        scene && view && view->assetSession() == &session ? evaluator->sceneSelection(false) : nullptr;
    if (picked)
        for (auto node = picked->scenePath().rbegin(); node != picked->scenePath().rend(); ++node)
            if (const std::string& id = scene->componentId(node->get()); !id.empty())
                return id;
    return {};
}

/// The outermost component around that one, within the component being edited, that isn't the entire model;
/// empty if there is none.
std::string meantBy(const std::string& under, const AssetSession& session)
{
    std::string meant = session.editedComponent();
    const Vs::Component* holder = session.asset()->findComponent(meant);
    bool isAll = true;
    while (isAll && meant.size() < under.size()) {
        isAll = holder && holder->children.size() == 1;
        meant = under.substr(0, under.find('/', meant.empty() ? 0 : meant.size() + 1));
        holder = session.asset()->findComponent(meant);
    }
    return meant == session.editedComponent() ? std::string() : meant;
}

} // namespace

constinit const CommandRow EditComponentCmdDef::kRow = {
    .key = L"EditComponentCommand",
    .title = "Edit Component",
    .tooltip = "Work within the component alone, with the rest shown as a ghost",
    .groups = {&CommandGroup::VeloraSolidGroup},
    .readonly = true,
    .arguments = {L"Component"}};

const Vs::UniqueString* EditComponentCmdDef::componentArgumentName()
{
    static const Vs::UniqueString* const name = Vs::UniqueString::find("Component", true);
    return name;
}

bool EditComponentCmdDef::onIsApplicable(CommandContext* context) const
{
    const AssetSession* session = context->assetSession();
    if (!session || !context->argumentAsString(componentArgumentName()).empty())
        return session != nullptr;
    const auto selected = selectedComponent(*session);
    return selected && selected->component != session->editedComponent();
}

CommandBase* EditComponentCmdDef::onCreateCommand(CommandContext* context)
{
    return new EditComponentCmd(this, context);
}

bool EditComponentCmdDef::onAddToContextMenu()
{
    CommandContext context = CommandContext::activeContext();
    return isApplicable(&context);
}

EditByDoubleClick::EditByDoubleClick()
{
    m_subscriptions.add(MouseEventSource::get(), this);
}

void EditByDoubleClick::mouseDoubleClick(MouseEvent* event)
{
    CommandContext context = CommandContext::activeContext();
    const AssetSession* session = context.assetSession();
    const CommandBase* active = CommandBase::getActiveCommand();
    const CommandDefinition* tool = active ? active->commandDefinition() : nullptr;
    if (!session || event->button() != kLeftButton || event->modifierMask() != kNoModifier ||
        (tool && tool->id() != CommandDefinition::selectCommandId()))
        return;
    const std::string meant = meantBy(componentUnder(*event, *session), *session);
    if (meant.empty())
        return;
    context.addArgument(EditComponentCmdDef::componentArgumentName(),
                        Vs::pathText({.component = meant}, *session->asset()));
    context.accessPoint(ECommandAccessPoint::Canvas);
    if (CommandDefinition* definition =
            CommandDefinitionMgr::get()->findCommandDefinitionById(EditComponentCmdDef::info()->key()))
        definition->executeLater(context);
}

} // namespace Vu::Design
