#include "UI/Base/Window/PropertyEdits.h"

#include "Server/DataModel/Selection/PathQueries.h"
#include "Server/DataModel/Selection/SelectionSet.h"
#include "Server/Types/Units/UnitDisplaySettings.h"
#include "UI/Base/Session/ActiveAssetUtils.h"
#include "UI/Base/Session/SelectionCommandInput.h"
#include "UI/Base/Window/ContextMenu.h"

#include <QColor>

#include <cmath>
#include <map>
#include <vector>

namespace Vu::PropertyEdits {
namespace {

constexpr std::wstring_view kRenameCommand = L"RenameCommand";
constexpr std::wstring_view kColourCommand = L"ColourCommand";
constexpr std::wstring_view kMoveCommand = L"MoveCommand";
/// Has an editing command end with the change made (EditCmd).
constexpr const char* kCommit = "Commit";

// The screen's signal and the share of light that it stands for.
float linear(double signal)
{
    return static_cast<float>(signal <= 0.04045 ? signal / 12.92 : std::pow((signal + 0.055) / 1.055, 2.4));
}

/// What is selected, as an editing command's input takes it.
std::wstring selectedObjects()
{
    std::vector<std::wstring> paths;
    const Vs::Asset* asset = ActiveAssetUtils::asset();
    const Vs::SelectionSet* selected = asset ? ActiveAssetUtils::selectionSet() : nullptr;
    if (selected)
        for (const auto& selection : selected->selections())
            if (const auto* object = Vs::cast<Vs::LogicalSelection>(selection.get()))
                paths.push_back(Vs::pathText(object->path(), *asset));
    return SelectionCommandInput::valueOf(paths);
}

double signal(float linear)
{
    return linear <= 0.0031308f ? 12.92 * linear : 1.055 * std::pow(double(linear), 1 / 2.4) - 0.055;
}

} // namespace

void rename(const std::wstring& name)
{
    runFromContextMenu(kRenameCommand, {{"NewName", name}});
}

void colour(const std::optional<Vs::Colour>& colour)
{
    std::map<const char*, std::wstring> arguments{{kCommit, L"1"}, {"Objects", selectedObjects()}};
    if (colour)
        arguments.insert({{"Colour", L"Code"}, {"Code", colourCode(*colour)}});
    else
        arguments.insert({"Colour", L"None"});
    runFromContextMenu(kColourCommand, arguments);
}

void move(int axis, double distance)
{
    using namespace Vs::Units;
    constexpr const char* kShifts[] = {"Dx", "Dy", "Dz"};
    runFromContextMenu(kMoveCommand, {{"Components", selectedObjects()},
                                      {kShifts[axis], toExactText(distance, Unit::base(Quantity::Length))},
                                      {kCommit, L"1"}});
}

std::wstring colourCode(const Vs::Colour& colour)
{
    return QColor::fromRgbF(float(signal(colour.r)), float(signal(colour.g)), float(signal(colour.b)))
        .name()
        .toStdWString();
}

std::optional<Vs::Colour> colourOf(const std::wstring& code)
{
    const QColor colour(QString::fromStdWString(code));
    if (!colour.isValid())
        return std::nullopt;
    return Vs::Colour{linear(colour.redF()), linear(colour.greenF()), linear(colour.blueF()), 1};
}

} // namespace Vu::PropertyEdits
