#include "UI/Commands/Selection/SelectionFilterCmd.h"

#include "Server/Base/TranscriptMgr.h"
#include "Server/DataModel/Selection/SelectionMgr.h"
#include "Server/Scene/GraphicsOptionGroup.h"
#include "UI/Base/Command/CommandInputSet.h"
#include "UI/Base/Command/InputControl.h"
#include "UI/Base/Session/ActiveAssetUtils.h"
#include "UI/Base/Session/SessionMgr.h"
#include "UI/Commands/ActiveCommand.h"
#include "UI/Commands/Localized.h"
#include "UI/Commands/Resources.h"

#include <boost/algorithm/string/classification.hpp>
#include <boost/algorithm/string/split.hpp>

#include <algorithm>
#include <set>
#include <tuple>

namespace Vu::Commands {

using Vs::SelectionCategory;
using Vs::Scene::GraphicsOptionGroup;

// clang-format off
constinit const CommandRow SelectionFilterCmdDef::kRow = {
    .key = L"SelectionFilterCommand", .title = "Selection Filters", .icon = &Resources::Cursor,
    .groups = {&CommandGroup::SelectGroup, &CommandGroup::BaseGroup}, .readonly = true, .arguments = {L"Marked"}};
// clang-format on

/// An entry of the menu, with the record of a category, which nobody else keeps.
struct SelectionFilterCmdDef::Entry
{
    Entry(Info* shown, std::unique_ptr<Info> kept) : own(std::move(kept)), item(own ? own.get() : shown) {}

    std::unique_ptr<Info> own;
    MenuItem item;
};

namespace {

/// Before the categories: Select Visible, a line, Select All.
constexpr size_t kFixedEntries = 3;

bool isSelectAll(const MenuItem& item)
{
    return item.info() == SelectionFilterCmdDef::selectAllInfo();
}

bool isSelectVisible(const MenuItem& item)
{
    return item.info() == SelectionFilterCmdDef::selectVisibleInfo();
}

} // namespace

Info* SelectionFilterCmdDef::selectAllInfo()
{
    static Info record(L"selectAllFilters", localized("selectAllFiltersInput", "Select All"), nullptr);
    return &record;
}

Info* SelectionFilterCmdDef::selectVisibleInfo()
{
    static Info record(L"selectVisible", localized("selectVisibleInput", "Select Visible"), nullptr);
    return &record;
}

const Vs::UniqueString* SelectionFilterCmdDef::markedArgumentName()
{
    static const Vs::UniqueString* const name = Vs::UniqueString::find("Marked", true);
    return name;
}

SelectionFilterCmdDef::SelectionFilterCmdDef() = default;

SelectionFilterCmdDef::~SelectionFilterCmdDef() = default;

bool SelectionFilterCmdDef::onIsApplicable(CommandContext* context) const
{
    return hasAssetSession(context);
}

std::vector<MenuItem*> SelectionFilterCmdDef::menuItems() const
{
    std::vector<MenuItem*> items;
    for (const auto& entry : m_entries)
        items.push_back(&entry->item);
    return items;
}

InputControl* SelectionFilterCmdDef::onInputControl()
{
    if (!m_menuControl)
        m_menuControl.reset(MenuControl::make(info(), this));
    updateMenuControl();
    return m_menuControl.get();
}

void SelectionFilterCmdDef::findCategories()
{
    m_categories.clear();
    Vs::SelectionMgr* manager = ActiveAssetUtils::selectionManager();
    if (!manager)
        return;
    std::vector<const Vs::SelectionFilter*> filters;
    manager->selectionState()->activeSelectionFilters(filters);
    Vs::EnumerableSelectionFilter::getSortedSelectionCategories(filters, m_categories);
}

bool SelectionFilterCmdDef::menuNeedsUpdating()
{
    if (m_updating)
        return false;
    findCategories();
    if (m_categories.empty())
        return false;
    return m_categories.size() + kFixedEntries != m_entries.size() ||
           !std::equal(m_categories.begin(), m_categories.end(), m_entries.begin() + kFixedEntries,
                       [](const SelectionCategory* category, const auto& entry) {
                           return category->name() == entry->item.info()->name();
                       });
}

void SelectionFilterCmdDef::updateMenuControl()
{
    if (m_menuControl && SessionMgr::get()->assetSessions().empty()) {
        m_menuControl->items({});
        m_entries.clear();
    }
    if (!m_menuControl || !menuNeedsUpdating())
        return;
    const auto before = std::exchange(m_entries, {});
    addEntry(selectVisibleInfo(), GraphicsOptionGroup::get()->selectClosestItemOnly());
    addEntry(Info::emptyInfo(), false);
    m_entries.back()->item.separator(true);
    // A fresh menu has this mark whatever the categories say.
    addEntry(selectAllInfo(),
             std::find(m_categories.begin(), m_categories.end(), nullptr) == m_categories.end());
    for (const SelectionCategory* category : m_categories) {
        auto record = std::make_unique<Info>(category->name(), category->name(), nullptr);
        m_entries.push_back(std::make_unique<Entry>(nullptr, std::move(record)));
        m_entries.back()->item.checked(category->isEnabled());
    }
    m_menuControl->items(menuItems());
}

void SelectionFilterCmdDef::addEntry(Info* record, bool checked)
{
    m_entries.push_back(std::make_unique<Entry>(record, nullptr));
    m_entries.back()->item.checked(checked);
}

void SelectionFilterCmdDef::markAll(const MenuItem& selectAll)
{
    bool changed = false;
    for (MenuItem* item : menuItems())
        if (!isSelectVisible(*item) && item->checked() != selectAll.checked()) {
            m_menuControl->selectItem(item, selectAll.checked(), false);
            changed = true;
        }
    if (changed)
        m_menuControl->selectItemNotification();
}

void SelectionFilterCmdDef::onMenuSelectionChanged(MenuItem* item)
{
    if (m_updating || !item)
        return;
    m_updating = true;
    if (isSelectAll(*item)) {
        markAll(*item);
    } else if (isSelectVisible(*item)) {
        GraphicsOptionGroup::get()->selectClosestItemOnly(item->checked());
    } else if (!item->checked()) {
        for (MenuItem* each : menuItems())
            if (isSelectAll(*each))
                m_menuControl->selectItem(each, false, true);
    }
    std::ignore = executeCommand(CommandContext::activeContext());
    m_updating = false;
}

std::wstring SelectionFilterCmdDef::marked() const
{
    std::wstring text;
    const auto add = [&](const std::wstring& key) { text += (text.empty() ? L"" : L",") + key; };
    for (MenuItem* item : menuItems())
        if (isSelectVisible(*item) && item->checked())
            add(item->info()->key());
    for (const SelectionCategory* category : m_categories)
        for (MenuItem* item : menuItems())
            if (item->info()->name() == category->name() && item->checked())
                add(category->id());
    return text;
}

void SelectionFilterCmdDef::mark(const std::wstring& marked)
{
    std::set<std::wstring> keys;
    boost::algorithm::split(keys, marked, boost::algorithm::is_any_of(L","));
    bool all = true;
    for (size_t i = 0; i + kFixedEntries < m_entries.size() && i < m_categories.size(); ++i) {
        const bool checked = keys.contains(m_categories[i]->id());
        m_menuControl->selectItem(&m_entries[i + kFixedEntries]->item, checked, false);
        all = all && checked;
    }
    for (MenuItem* item : menuItems())
        if (isSelectAll(*item)) {
            m_menuControl->selectItem(item, all, false);
        } else if (isSelectVisible(*item)) {
            m_menuControl->selectItem(item, keys.contains(item->info()->key()), false);
            GraphicsOptionGroup::get()->selectClosestItemOnly(item->checked());
        }
}

CommandBase* SelectionFilterCmdDef::onCreateCommand(CommandContext* context)
{
    // A line may come before anything has drawn the menu.
    inputControl();
    if (context->hasArgument(markedArgumentName()))
        mark(context->argumentAsString(markedArgumentName()));
    return new SelectionFilterCmd(this, context);
}

SelectionFilterCmd::SelectionFilterCmd(SelectionFilterCmdDef* definition, CommandContext* context)
    : Implements(definition, context), m_definition(*definition)
{
    usesCommandDialog(false);
    onCreateCommandInputs();
    const CommandBase* active = activeCommandOf(assetSession());
    const CommandDefinition* tool = active ? active->commandDefinition() : nullptr;
    m_activeCommandIsSelect = tool && tool->id() == CommandDefinition::selectCommandId();
    // What is chosen during another command isn't what that command does.
    if (!m_activeCommandIsSelect)
        repeatable(false);
}

void SelectionFilterCmd::onCreateCommandInputs()
{
    CommandInputSet* inputs = CommandInputSet::make(this);
    int number = 1;
    for (const MenuItem* item : m_definition.menuItems()) {
        const int own = isSelectAll(*item) ? 0 : isSelectVisible(*item) ? 1 : number++;
        auto* input = BoolValueCommandInput::make(inputs, own, item->info());
        // The command's argument says it all.
        input->enableTranscript(false);
        input->value(item->checked());
        if (!isSelectAll(*item) && !isSelectVisible(*item))
            m_categoryInputs.push_back(input);
    }
    commandInputSet(inputs);
}

const Vs::UniqueString* SelectionFilterCmd::onStackingCategory() const
{
    return StackingCategory::selectionFilterStackingCategory();
}

void SelectionFilterCmd::onExecute(Vs::Status&)
{
    updateCategories();
    if (Vs::TranscriptMgr::get()->recording())
        commandContext()->addArgument(SelectionFilterCmdDef::markedArgumentName(), m_definition.marked());
}

void SelectionFilterCmd::updateCategories()
{
    // Another command may have started since the menu was opened.
    m_definition.findCategories();
    for (const BoolValueCommandInput* input : m_categoryInputs)
        for (SelectionCategory* category : m_definition.categories())
            if (category->name() == input->info()->name())
                category->enable(input->value(), m_activeCommandIsSelect);
}

} // namespace Vu::Commands
