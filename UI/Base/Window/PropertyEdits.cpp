#include "UI/Base/Window/PropertyEdits.h"

#include "Server/DataModel/Selection/SelectedPaths.h"
#include "Server/DataModel/Selection/SelectionSet.h"
#include "Server/Types/Units/UnitDisplaySettings.h"
#include "UI/Base/Command/ColourCommandInput.h"
#include "UI/Base/Session/ActiveAssetUtils.h"
#include "UI/Base/Session/SelectionCommandInput.h"
#include "UI/Base/Window/ContextMenu.h"
#include "UI/Base/Window/PropertyValues.h"

#include <map>
#include <vector>

namespace Vu::PropertyEdits {
namespace {

constexpr std::wstring_view kRenameCommand = L"RenameCommand";
constexpr std::wstring_view kColourCommand = L"ColourCommand";
constexpr std::wstring_view kMoveCommand = L"MoveCommand";
/// Ends an editing command with the change made (EditCmd).
constexpr const char* kCommit = "Commit";

/// The selection as an editing command's input takes it.
std::wstring selectedObjects()
{
    const Vs::Asset* asset = ActiveAssetUtils::asset();
    const Vs::SelectionSet* selected = asset ? ActiveAssetUtils::selectionSet() : nullptr;
    return SelectionCommandInput::valueOf(selected ? Vs::pathTextsIn(*selected, *asset)
                                                   : std::vector<std::wstring>());
}

} // namespace

void rename(const std::wstring& name)
{
    runFromContextMenu(kRenameCommand, {{"NewName", name}});
}

void colour(const std::wstring& code)
{
    runFromContextMenu(
        kColourCommand,
        {{"Colour", code.empty() ? L"None" : code}, {"Objects", selectedObjects()}, {kCommit, L"1"}});
}

std::wstring presentColour()
{
    const Vs::Asset* asset = ActiveAssetUtils::asset();
    Vs::SelectionMgr* manager = ActiveAssetUtils::selectionManager();
    const auto colour = asset && manager ? valuesOf(*manager, *asset).colour : PropertyValues().colour;
    const bool isOne = colour.isKnown() && !colour.differs() && colour.value();
    return isOne ? ColourCommandInput::codeOf(*colour.value()) : std::wstring();
}

void move(int axis, double distance)
{
    using namespace Vs::Units;
    constexpr const char* kShifts[] = {"Dx", "Dy", "Dz"};
    runFromContextMenu(kMoveCommand, {{"Components", selectedObjects()},
                                      {kShifts[axis], toExactText(distance, Unit::base(Quantity::Length))},
                                      {kCommit, L"1"}});
}

} // namespace Vu::PropertyEdits
