#include "UI/Commands/Shells/SplitViewLayoutCmd.h"

#include "Server/Base/Status.h"
#include "UI/Base/View/SplitViewMgr.h"
#include "UI/Commands/Localized.h"
#include "UI/Commands/Shells/AssetShell.h"

#include <algorithm>

namespace Vu::Commands {
namespace {

/// A form of the asset shell's layout, and what it is called.
struct LayoutRow
{
    const wchar_t* filter;
    const char* titleKey;
    const char* title;
};

// clang-format off
constexpr LayoutRow kLayouts[] = {
    {SplitViewLayoutCmdDef::kOneView, "SplitViewOneView",    "One View"},
    {L"SideBySide",                   "SplitViewSideBySide", "Side by Side"},
    {L"Triple",                       "SplitViewTriple",     "Three Views"},
    {L"Quad",                         "SplitViewQuad",       "Four Views"}};
// clang-format on

std::wstring filterOf(const std::wstring& layout)
{
    return layout == SplitViewLayoutCmdDef::kOneView ? std::wstring() : layout;
}

} // namespace

// clang-format off
constinit const CommandRow SplitViewLayoutCmdDef::kRow = {
    .key = L"SplitViewLayoutCommand", .title = "Split View",
    .groups = {&CommandGroup::BaseGroup}, .readonly = true, .arguments = {L"Layout"}};
// clang-format on

void SplitViewLayoutCmdDef::createCommandDef()
{
    static SplitViewLayoutCmdDef definition;
}

const Vs::UniqueString* SplitViewLayoutCmdDef::layoutArgumentName()
{
    static const Vs::UniqueString* const name = Vs::UniqueString::find("Layout", true);
    return name;
}

bool SplitViewLayoutCmdDef::onIsApplicable(CommandContext* context) const
{
    return Vs::cast<AssetShell>(context->shell()) && hasAssetSession(context);
}

InputControl* SplitViewLayoutCmdDef::onInputControl()
{
    if (!m_list.control()) {
        m_list.make(info(), this);
        OwnedList::Items items;
        for (const LayoutRow& row : kLayouts)
            items.push_back(std::make_unique<Info>(row.filter, localized(row.titleKey, row.title), nullptr));
        m_list.items(std::move(items));
    }
    return m_list.control();
}

void SplitViewLayoutCmdDef::onUpdateInputControl(CommandContext* context)
{
    CommandDefinition::onUpdateInputControl(context);
    const auto* shell = Vs::cast<AssetShell>(context->shell());
    const auto shown = std::find_if(m_list.items().begin(), m_list.items().end(), [&](const auto& item) {
        return shell && filterOf(item->key()) == shell->arrangementFilter();
    });
    m_list.control()->selectedItem(shown == m_list.items().end() ? nullptr : shown->get(), false);
}

void SplitViewLayoutCmdDef::onListSelectionChanged(Info* item)
{
    if (!item)
        return;
    CommandContext context = CommandContext::activeContext();
    context.addArgument(layoutArgumentName(), item->key());
    executeLater(context);
}

SplitViewLayoutCmd::SplitViewLayoutCmd(SplitViewLayoutCmdDef* definition, CommandContext* context)
    : Implements(definition, context)
{
    repeatable(false);
}

void SplitViewLayoutCmd::onExecute(Vs::Status& status)
{
    const std::wstring layout =
        commandContext()->argumentAsString(SplitViewLayoutCmdDef::layoutArgumentName());
    if (layout.empty())
        return;
    if (std::ranges::none_of(kLayouts, [&](const LayoutRow& row) { return layout == row.filter; }))
        status.addError(localizedFormat(
            "SplitViewUnknown",
            "\"%1%\" is not a layout of views; there are OneView, SideBySide, Triple and Quad.", layout));
    else
        SplitViewMgr::get()->updateArrangement(filterOf(layout));
}

} // namespace Vu::Commands
