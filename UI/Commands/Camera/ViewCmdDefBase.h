#pragma once

#include "UI/Base/Command/InputControl.h"
#include "UI/Commands/CommandRow.h"

#include <memory>
#include <span>
#include <vector>

namespace Vs::CommonData {
class CommonDataAssetSettings;
}

namespace Vs::Scene {
class Camera;
class RenderParams;
} // namespace Vs::Scene

namespace Vu::Commands {

/// What the view commands read and write besides the user's graphics options: what is shown now. Each may be
/// null.
struct ViewState
{
    Vs::Scene::RenderParams* render = nullptr; ///< Of the fragment "Model" of the active session's view.
    Vs::Scene::Camera* camera = nullptr;       ///< The same fragment's.
    Vs::CommonData::CommonDataAssetSettings* settings = nullptr; ///< Of the active asset.

    static ViewState active();
};

/// A setting of the view with a list of its values, one of which is current. Choosing one runs the definition
/// with the value's identifier as "CmdId"; what that does stands in ViewCmd.
class ViewCmdDefBase : public Vs::Implements<ViewCmdDefBase, CommandDefinition, IListControlHandler>
{
public:
    ~ViewCmdDefBase() override;

    /// "CmdId": the text argument of all view commands, the identifier of the value.
    static const Vs::UniqueString* cmdIdArgumentName();

    void onListSelectionChanged(Info* item) override;

protected:
    explicit ViewCmdDefBase(Info* info) : Implements(info) {}

    CommandBase* onCreateCommand(CommandContext* context) override;
    InputControl* onInputControl() override;
    void onUpdateInputControl(CommandContext* context) override;

    /// Makes the list's items, once. Whoever makes them owns them and keeps them as long as the definition.
    virtual void onSetupListItems(std::vector<Info*>& items) = 0;
    /// The item of the list that shows the current state; null if none does. The state's `render` is there.
    virtual Info* onSelectedItem(const std::vector<Info*>& items, const ViewState& state) = 0;

private:
    std::unique_ptr<ListControl> m_list; ///< Null until it is first asked for.
    bool m_updating = false;             ///< The selection is being set by the program, not by the user.
};

/// The items of a list, and what tells the number of the one that is current, or any other number for none.
struct ViewChoices
{
    std::span<const CommandRow> items;
    int (*current)(const ViewState& state);
};

/// A list of the choices `Self::kChoices`.
template <class Self>
class ViewListCmdDef : public RowDefinition<Self, ViewCmdDefBase>
{
protected:
    void onSetupListItems(std::vector<Info*>& items) override
    {
        m_items.reserve(Self::kChoices.items.size());
        for (const CommandRow& row : Self::kChoices.items)
            items.push_back(&m_items.emplace_back(makeInfo(row)));
    }

    Info* onSelectedItem(const std::vector<Info*>& items, const ViewState& state) override
    {
        const int current = Self::kChoices.current(state);
        return current >= 0 && size_t(current) < items.size() ? items[size_t(current)] : nullptr;
    }

private:
    std::vector<Info> m_items;
};

} // namespace Vu::Commands
