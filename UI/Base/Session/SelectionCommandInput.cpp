#include "UI/Base/Session/SelectionCommandInput.h"

#include "Server/Base/Status.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Measure/MeasureMgr.h"
#include "Server/DataModel/Selection/PathQueries.h"
#include "Server/DataModel/Selection/SelectionFilter.h"
#include "Server/DataModel/Selection/SelectionMgr.h"
#include "Server/DataModel/TransactionMgr.h"
#include "UI/Base/Command/CommandDefinition.h"
#include "UI/Base/Command/CommandInputSet.h"
#include "UI/Base/Command/InteractiveCommandBase.h"
#include "UI/Base/Command/Private/Localized.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/Private/CanvasPicker.h"
#include "UI/Base/Session/Private/ClickChoice.h"
#include "UI/Base/Session/Private/InputFilter.h"
#include "UI/Base/Session/Private/PartFollower.h"
#include "UI/Base/Session/Private/PathList.h"
#include "UI/Base/Session/Private/SelectionPointer.h"
#include "UI/Base/Session/SelectionInputEvents.h"
#include "UI/Base/View/GraphicsCanvas.h"

#include <algorithm>
#include <tuple>
#include <utility>

namespace Vu {
namespace {

bool rests(const CommandBase& command)
{
    const CommandDefinition* definition = command.commandDefinition();
    return definition && definition->id() == CommandDefinition::selectCommandId();
}

/// What a command picks that requires nothing.
class ComponentFilter : public Vs::Implements<ComponentFilter, Vs::SelectionFilter>
{
public:
    bool accepts(const Vs::Selection& selection) const override
    {
        const auto* object = Vs::cast<Vs::LogicalSelection>(&selection);
        return object && object->path().leaf == Vs::ObjectPath::Leaf::Component;
    }
};

Vs::Asset* assetOf(const CommandInputSet& set)
{
    const AssetSession* session = set.command()->assetSession();
    return session ? session->asset() : nullptr;
}

Vs::Asset* assetOf(const CommandInputBase& input)
{
    return assetOf(*input.commandInputSet());
}

} // namespace

SelectionCommandInput* SelectionCommandInput::make(CommandInputSet* set, int number, Info* info)
{
    return new SelectionCommandInput(set, number, info);
}

SelectionCommandInput::SelectionCommandInput(CommandInputSet* set, int number, Info* info)
    : Implements(set, number, info),
      ComponentsListener(assetOf(*set)),
      m_kinds(rests(*set->command())),
      m_follower(std::make_unique<PartFollower>())
{
    m_own.subscribe(this);
    m_pointer = std::make_unique<SelectionPointer>(*this);
}

SelectionCommandInput::~SelectionCommandInput()
{
    leaveSession();
}

void SelectionCommandInput::requiredQuantity(bool exactly, size_t quantity)
{
    m_exactly = exactly;
    m_quantity = quantity;
}

void SelectionCommandInput::pickFilters(std::vector<const Vs::SelectionFilter*>& filters) const
{
    static const ComponentFilter components;
    if (m_filter)
        filters.push_back(m_filter);
    else if (!rests(*commandInputSet()->command()))
        filters.push_back(&components);
    filters.push_back(&m_kinds);
}

bool SelectionCommandInput::isComplete() const
{
    const size_t count = selectionSet().size();
    return m_exactly ? count == m_quantity : count >= m_quantity;
}

void SelectionCommandInput::state(EState value)
{
    if (std::exchange(m_state, value) != value)
        stateChanged();
}

bool SelectionCommandInput::isCurrent() const
{
    const SelectionCommandInput* first = nullptr;
    const SelectionCommandInput* last = nullptr;
    for (const auto& input : commandInputSet()->inputs()) {
        const auto* candidate = Vs::cast<SelectionCommandInput>(input.get());
        if (!candidate || candidate->m_state == EState::Idle || !candidate->isUsable())
            continue;
        if (candidate->m_preferred)
            return candidate == this;
        if (!first && !candidate->isComplete())
            first = candidate;
        last = candidate;
    }
    return (first ? first : last) == this;
}

void SelectionCommandInput::makeCurrent()
{
    for (const auto& input : commandInputSet()->inputs())
        if (auto* other = Vs::cast<SelectionCommandInput>(input.get()))
            other->m_preferred = other == this;
    stateChanged();
}

std::wstring SelectionCommandInput::onWhyInvalid() const
{
    if (isComplete() || !m_required)
        return {};
    if (m_quantity <= 1)
        return localized("InputNeedsOneSelection", "Select something in the view.");
    return localizedFormat("InputNeedsSelection", "Select %2% things in the view; so far there are %1%.",
                           selectionSet().size(), m_quantity);
}

Vs::SelectionMgr* SelectionCommandInput::pickingManager() const
{
    const CommandBase* command = commandInputSet()->command();
    Vs::SelectionMgr* selection = command->isActive() ? command->selectionManager() : nullptr;
    return selection && !selection->suspended() && isCurrent() ? selection : nullptr;
}

bool SelectionCommandInput::accepts(const Vs::StrongRef<Vs::Selection>& selection) const
{
    auto* command = Vs::cast<InteractiveCommandBase>(commandInputSet()->command());
    if (!selection || (m_filter && !m_filter->accepts(*selection)) ||
        (command && !command->onFilterSelection(selection, nullptr)))
        return false;
    SelectionInputQuerySelectPermittedEvent event(const_cast<SelectionCommandInput*>(this), selection.get());
    commandInputSet()->fire(&event);
    return event.permitted();
}

Vs::StrongRef<Vs::Selection> SelectionCommandInput::under(const MouseEvent& event) const
{
    const AssetSession* session = commandInputSet()->command()->assetSession();
    if (!session)
        return nullptr;
    const InputFilter wanted(*this);
    Selections objects = objectsUnder(event, *session, wanted.filter());
    std::erase_if(objects, [this](const auto& object) { return !accepts(object); });
    if (objects.empty())
        return nullptr;
    const ClickChoice::Accepts permitted = [&](const auto& object) {
        return wanted.filter()->accepts(*object) && accepts(object);
    };
    const ClickChoice choice(selectionSet(), permitted);
    if (clickClimbs(event.modifierMask()))
        return choice.holder(objects);
    return m_current ? choice.componentOrPart(objects, clickAdds(event.modifierMask())) : objects.front();
}

bool SelectionCommandInput::add(Vs::StrongRef<Vs::Selection> selection)
{
    if (!accepts(selection))
        return false;
    auto all = selectionSet().selections();
    if (m_exactly && m_quantity > 0 && all.size() >= m_quantity)
        all.erase(all.begin());
    all.push_back(std::move(selection));
    // The same thing at a different place is also news.
    if (!selections().replace(all))
        selectionSetChanged();
    return true;
}

void SelectionCommandInput::clear()
{
    selections().clear();
}

void SelectionCommandInput::replace(const std::vector<Vs::StrongRef<Vs::Selection>>& selections)
{
    this->selections().replace(selections);
}

void SelectionCommandInput::replacesCurrentSelection(bool value)
{
    Vs::SelectionMgr* manager = value ? commandInputSet()->command()->selectionManager() : nullptr;
    leaveSession();
    if (!manager)
        return;
    m_current = &manager->selectionSet();
    m_current->subscribe(this);
}

void SelectionCommandInput::leaveSession()
{
    if (Vs::SelectionSet* left = std::exchange(m_current, nullptr))
        left->unsubscribe(this);
}

// A command that closed its session no longer has a manager, and the selection is gone with the session.
void SelectionCommandInput::commandEnded()
{
    const CommandBase* command = commandInputSet()->command();
    if (!command->commandManager())
        m_current = nullptr;
    else if (Vs::SelectionMgr* manager = command->selectionManager())
        manager->collect(this, {});
    Vs::SelectionSet* current = m_current;
    leaveSession();
    if (current && m_clearAtEnd)
        current->clear();
}

void SelectionCommandInput::selectionSetChanged()
{
    m_preferred = m_preferred && !isComplete();
    Vs::SelectionMgr* manager = m_current ? nullptr : commandInputSet()->command()->selectionManager();
    if (manager && commandInputSet()->command()->isRunning())
        manager->collect(this, m_own.selections());
    valueChanged();
}

void SelectionCommandInput::click(const Vs::StrongRef<Vs::Selection>& selection, unsigned modifiers)
{
    const bool adds = clickAdds(modifiers);
    if (!selection) {
        if (m_current && !adds)
            clear();
    } else if (m_current && !adds) {
        selections().replace({selection});
    } else if (clickClimbs(modifiers) && !m_exactly && !isSolid(*selection)) {
        takeHolder(selection);
    } else if (!adds || m_exactly || !selections().remove(*selection)) {
        std::ignore = add(selection); // A click that is refused changes nothing.
    }
}

// It stands for everything in it that was taken before.
void SelectionCommandInput::takeHolder(const Vs::StrongRef<Vs::Selection>& holder)
{
    const std::string id = Vs::cast<Vs::LogicalSelection>(holder.get())->componentId();
    auto left = selectionSet().selections();
    std::erase_if(left, [&](const auto& each) {
        const auto* object = Vs::cast<Vs::LogicalSelection>(each.get());
        return object && (object->componentId() == id || object->componentId().starts_with(id + '/'));
    });
    left.push_back(holder);
    selections().replace(left);
}

bool SelectionCommandInput::pick(const Vs::StrongRef<Vs::Selection>& selection, unsigned modifiers)
{
    if (!pickingManager() || !accepts(selection))
        return false;
    CommandInUse inUse(commandInputSet()->command());
    click(selection, modifiers);
    return true;
}

SelectionCommandInput* SelectionCommandInput::currentOf(const CommandBase* command)
{
    const CommandInputSet* set = command ? command->commandInputSet() : nullptr;
    if (set)
        for (const auto& input : set->inputs())
            if (auto* picking = Vs::cast<SelectionCommandInput>(input.get()); picking && picking->isCurrent())
                return picking;
    return nullptr;
}

std::wstring SelectionCommandInput::displayText() const
{
    if (selectionSet().empty())
        return localized("InputSelectInView", "Select in the view");
    if (const auto* object = Vs::cast<Vs::LogicalSelection>(selectionSet().selections().front().get());
        object && selectionSet().size() == 1 && object->asset() == assetOf(*this))
        return Vs::MeasureMgr::get()->nameOf(*object);
    return localizedFormat("InputSelected", "%1% selected", selectionSet().size());
}

std::wstring SelectionCommandInput::valueAsString() const
{
    std::vector<std::wstring> paths;
    const Vs::Asset* asset = assetOf(*this);
    // Texts that were kept are in the order of the selections, unless these have changed.
    size_t kept = 0;
    for (const auto& selection : selectionSet().selections()) {
        const auto* logical = Vs::cast<Vs::LogicalSelection>(selection.get());
        if (!logical || logical->asset() != asset)
            continue;
        const bool isNext = kept < m_texts.size() && m_texts[kept].first == logical->path();
        paths.push_back(isNext ? m_texts[kept++].second : textOf(logical->path(), *asset));
    }
    std::erase(paths, std::wstring());
    return valueOf(paths);
}

void SelectionCommandInput::modelWillChange()
{
    m_texts.clear();
    const Vs::Asset* asset = assetOf(*this);
    for (const auto& selection : selectionSet().selections())
        if (const auto* logical = Vs::cast<Vs::LogicalSelection>(selection.get());
            logical && logical->asset() == asset)
            m_texts.emplace_back(logical->path(), Vs::pathText(logical->path(), *asset));
}

// A command's own changes are made of what its inputs name in the model as it was before them.
void SelectionCommandInput::assetComponentsChanged(Vs::ComponentsEvent* event)
{
    if (m_current || event->asset() != assetOf(*this) || !m_follower->heard(*event->asset()))
        return;
    const CommandBase* command = commandInputSet()->command();
    const CommandDefinition* own = command->commandDefinition();
    const bool isEnding = !command->isActive() && !command->isSuspended();
    if (isEnding || (own && Vs::TransactionMgr(event->asset()).currentTransaction()->cmdKey() == own->id()))
        return;
    const auto left = m_follower->follow(m_own.selections(), event->asset());
    m_follower->followed();
    if (m_own.replace(left))
        m_texts.clear();
}

std::wstring SelectionCommandInput::textOf(const Vs::ObjectPath& path, const Vs::Asset& asset) const
{
    const auto kept =
        std::find_if(m_texts.begin(), m_texts.end(), [&](const auto& each) { return each.first == path; });
    return kept == m_texts.end() ? Vs::pathText(path, asset) : kept->second;
}

std::wstring SelectionCommandInput::valueOf(const std::vector<std::wstring>& paths)
{
    return PathList::text(paths);
}

std::optional<SelectionCommandInput::Selections> SelectionCommandInput::named(const std::wstring& text,
                                                                              Vs::Status& status) const
{
    Vs::Asset* asset = assetOf(*this);
    if (text.empty())
        return Selections();
    return asset ? PathList::objects(text, *asset, status) : std::nullopt;
}

bool SelectionCommandInput::valueFromString(const std::wstring& text)
{
    Vs::Status status;
    const std::optional<Selections> found = named(text, status);
    if (!found || !std::all_of(found->begin(), found->end(),
                               [this](const auto& selection) { return accepts(selection); }))
        return false;
    if (!selections().replace(*found))
        valueConfirmed();
    return true;
}

std::wstring SelectionCommandInput::whyRefused(const std::wstring& text) const
{
    Vs::Status status;
    if (named(text, status))
        return localizedFormat("InputRefusesSelection", "\"%1%\" can't be selected for \"%2%\".", text,
                               info()->name());
    return status.isError() ? status.toString() : CommandInputBase::whyRefused(text);
}

bool SelectionCommandInput::giveUp()
{
    return m_pointer->giveUp();
}

// As a click does, but for Shift, which only adds: nobody sees in a crowd what would go.
void SelectionCommandInput::take(const std::vector<Vs::StrongRef<Vs::Selection>>& banded, unsigned modifiers)
{
    const bool toggles = modifiers & kControlModifier;
    const bool adds = toggles || (modifiers & kShiftModifier) || !m_current;
    std::vector<Vs::StrongRef<Vs::Selection>> all;
    const Vs::SelectionIndex before(selectionSet().selections()), now(banded);
    if (adds)
        for (const auto& selection : selectionSet().selections())
            if (!toggles || !now.contains(*selection))
                all.push_back(selection);
    for (const auto& selection : banded)
        if (!adds || !before.contains(*selection))
            all.push_back(selection);
    selections().replace(all);
}

} // namespace Vu
