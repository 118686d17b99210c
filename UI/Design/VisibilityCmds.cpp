#include "UI/Design/VisibilityCmds.h"

#include "Server/Component/Component.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Selection/SelectedPaths.h"
#include "Server/DataModel/Selection/SelectionMgr.h"
#include "Server/DataModel/Selection/VisibilityRequest.h"
#include "UI/Base/Command/CommandGroup.h"
#include "UI/Base/Command/SimpleCommand.h"
#include "UI/Base/Program/Application.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/SessionMgr.h"
#include "UI/Design/CommandRow.h"
#include "UI/Design/Localized.h"
#include "UI/Design/ParametersAsList.h"

#include <algorithm>
#include <memory>

namespace Vu::Design {
namespace {

using Kind = VisibilityCmdDef::Kind;
using Paths = std::vector<Vs::ObjectPath>;

// clang-format off
constexpr CommandRow kHide    = {.key = L"HideCommand", .title = "Hide", .tooltip = "Hide what is selected", .arguments = {L"Objects"}};
constexpr CommandRow kShow    = {.key = L"ShowCommand", .title = "Show", .tooltip = "Show what is selected and hidden", .arguments = {L"Objects"}};
constexpr CommandRow kShowAll = {.key = L"ShowAllCommand", .title = "Show All", .tooltip = "Show everything that is hidden", .hotkey = "Shift+V"};
constexpr CommandRow kToggle  = {.key = L"ToggleVisibilityCommand", .title = "Show or Hide", .tooltip = "Hide what is selected, or show it if it is hidden", .hotkey = "V", .arguments = {L"Objects"}};
// clang-format on
Paths selectedPaths(AssetSession& session)
{
    Paths paths = Vs::pathsIn(session.selectionManager()->selectionSet());
    std::erase_if(
        paths, [&](const Vs::ObjectPath& path) { return !session.asset()->findComponent(path.component); });
    return paths;
}

void addHidden(const Vs::Component& parent, Paths& paths)
{
    for (const auto& child : parent.children) {
        if (!child->visible)
            paths.push_back({child->id});
        addHidden(*child, paths);
    }
}

bool hidesSomething(const Vs::Component& parent)
{
    return std::any_of(parent.children.begin(), parent.children.end(),
                       [](const auto& child) { return !child->visible || hidesSomething(*child); });
}

size_t hiddenIn(const Vs::Component& parent)
{
    size_t hidden = 0;
    for (const auto& child : parent.children)
        hidden += (child->visible ? 0 : 1) + hiddenIn(*child);
    return hidden;
}

bool isShown(const Vs::Asset& asset, const Vs::ObjectPath& path)
{
    const Vs::Component* component = asset.findComponent(path.component);
    return component && component->visible;
}

/// Whether the visibility of anything would change.
bool hasWork(Kind kind, const Vs::Asset& asset, const Paths& paths)
{
    const auto shown = [&](const Vs::ObjectPath& path) { return isShown(asset, path); };
    switch (kind) {
    case Kind::Hide:
        return std::any_of(paths.begin(), paths.end(), shown);
    case Kind::Show:
        return !std::all_of(paths.begin(), paths.end(), shown);
    default:
        return !paths.empty();
    }
}

class VisibilityCmd : public Vs::Implements<VisibilityCmd, SimpleCommand>
{
public:
    VisibilityCmd(CommandDefinition* definition, CommandContext* context, Kind kind)
        : Implements(definition, context), m_kind(kind)
    {
    }

protected:
    void onExecute(Vs::Status& status) override
    {
        Vs::Asset* asset = commandContext()->asset();
        if (!asset || !assetSession()) {
            status.addError(
                localized("NoDesignToShow", "There is no active design to show or hide parts of."));
            return;
        }
        Paths paths = readPaths(*asset, status);
        if (status.isError())
            return;
        const bool visible =
            m_kind == Kind::Toggle ? !hasWork(Kind::Hide, *asset, paths) : m_kind != Kind::Hide;
        if (m_kind == Kind::ShowAll && paths.empty())
            return;
        const auto chosen = static_cast<size_t>(
            std::ranges::count_if(paths, [&](const auto& path) { return isShown(*asset, path); }));
        const std::unique_ptr<Vs::Request, void (*)(Vs::Request*)> request(
            Vs::VisibilityRequest::make(std::move(paths), visible),
            [](Vs::Request* each) { each->destroy(); });
        const bool hides = !visible && commandContext()->isByHand();
        const size_t before = hides ? hiddenIn(*asset->components()) : 0;
        if (executeRequest(request.get(), false, {}, status) && hides)
            tellOfOthers(hiddenIn(*asset->components()) - before, chosen);
    }

private:
    /// A user who hides one bolt of an assembly that occurs several times will wonder where the others went.
    static void tellOfOthers(size_t hidden, size_t wanted)
    {
        if (hidden > wanted)
            Application::get()->inform(
                localizedFormat("HiddenElsewhere",
                                "Hidden in %1% places: wherever the assembly that holds it occurs.", hidden));
    }

    Paths readPaths(const Vs::Asset& asset, Vs::Status& status) const
    {
        if (m_kind == Kind::ShowAll) {
            Paths paths;
            addHidden(*asset.components(), paths);
            return paths;
        }
        const std::wstring named =
            commandContext()->argumentAsString(VisibilityCmdDef::objectsArgumentName());
        return named.empty() ? selectedPaths(*assetSession()) : pathsOfList(named, asset, status);
    }

    Kind m_kind;
};

} // namespace

VisibilityCmdDef::VisibilityCmdDef(Info* info, Kind kind) : Implements(info), m_kind(kind)
{
    joinCommandGroup(CommandGroup::VisualizationGroup());
}

const Vs::UniqueString* VisibilityCmdDef::objectsArgumentName()
{
    static const Vs::UniqueString* const name = Vs::UniqueString::find("Objects", true);
    return name;
}

bool VisibilityCmdDef::onIsApplicable(CommandContext* context) const
{
    AssetSession* session = context->assetSession();
    if (!session || m_kind == Kind::ShowAll)
        return session != nullptr;
    return !context->argumentAsString(objectsArgumentName()).empty() ||
           hasWork(m_kind, *session->asset(), selectedPaths(*session));
}

CommandBase* VisibilityCmdDef::onCreateCommand(CommandContext* context)
{
    return new VisibilityCmd(this, context, m_kind);
}

bool VisibilityCmdDef::onAddToContextMenu()
{
    CommandContext context = CommandContext::activeContext();
    if (m_kind == Kind::ShowAll)
        return context.asset() && hidesSomething(*context.asset()->components());
    return m_kind != Kind::Toggle && isApplicable(&context);
}

Info* HideCmdDef::info()
{
    static Info info = makeInfo(kHide);
    return &info;
}

HideCmdDef::HideCmdDef() : Implements(info(), Kind::Hide) {}

Info* ShowCmdDef::info()
{
    static Info info = makeInfo(kShow);
    return &info;
}

ShowCmdDef::ShowCmdDef() : Implements(info(), Kind::Show) {}

Info* ShowAllCmdDef::info()
{
    static Info info = makeInfo(kShowAll);
    return &info;
}

ShowAllCmdDef::ShowAllCmdDef() : Implements(info(), Kind::ShowAll) {}

Info* ToggleVisibilityCmdDef::info()
{
    static Info info = makeInfo(kToggle);
    return &info;
}

ToggleVisibilityCmdDef::ToggleVisibilityCmdDef() : Implements(info(), Kind::Toggle) {}

} // namespace Vu::Design
