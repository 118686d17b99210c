// The subject area "Measure": the measurements of MeasureMgr, for scripts and for users who type.

#include "Server/Base/NumberText.h"
#include "Server/Base/Status.h"
#include "Server/Base/TextCommand.h"
#include "Server/DataModel/Measure/MeasureMgr.h"
#include "Server/DataModel/Selection/PathQueries.h"
#include "Server/Types/Units/UnitDisplaySettings.h"
#include "UI/Base/Command/Private/Localized.h"
#include "UI/Base/Command/TextRows.h"
#include "UI/Base/Session/ActiveAssetUtils.h"

namespace Vu {

namespace {

using Vs::EMeasureType;
using Vs::TextCommandParameters;
using Vs::TextCommandResult;
using Vs::Units::Quantity;

constexpr const wchar_t* kArea = L"Measure";

// clang-format off
/// One row for each command; a value in three parts is printed as three values, from `type` on.
struct MeasureRow
{
    const wchar_t* name;
    const wchar_t* help;
    const char* format;
    EMeasureType type;
    Quantity quantity;
    unsigned fewest, most; ///< Paths.
    int parts;
};

constexpr MeasureRow kLength     = {L"Length",     L"<path> [/Exact] [/Plain] Gives the length of an edge. A path is like Plate:1/Bolt:2/Body1/Edge3; /Exact shows all decimals, /Plain the number alone, in mm or radians", "%s", EMeasureType::Length, Quantity::Length, 1, 1, 1};
constexpr MeasureRow kRadius     = {L"Radius",     L"<path> [/Exact] [/Plain] Gives the radius of a round edge or face", "%s", EMeasureType::Radius, Quantity::Length, 1, 1, 1};
constexpr MeasureRow kSurface     = {L"Area",       L"<path> [/Exact] [/Plain] Gives the area of a face, a body or a component", "%s", EMeasureType::Area, Quantity::Area, 1, 1, 1};
constexpr MeasureRow kVolume     = {L"Volume",     L"<path> [/Exact] [/Plain] Gives the volume of a body or a component", "%s", EMeasureType::Volume, Quantity::Volume, 1, 1, 1};
constexpr MeasureRow kLoopLength = {L"LoopLength", L"<path> [/Exact] [/Plain] Gives the length of the edges around the outside of a face", "%s", EMeasureType::LoopLength, Quantity::Length, 1, 1, 1};
constexpr MeasureRow kPosition   = {L"Position",   L"<path> [/Exact] [/Plain] Gives the place of an object: x, y, z", "%s", EMeasureType::PositionX, Quantity::Length, 1, 1, 3};
constexpr MeasureRow kDistance   = {L"Distance",   L"<path> <path> [/Exact] [/Plain] Gives the shortest distance of two objects", "%s%s", EMeasureType::Distance, Quantity::Length, 2, 2, 1};
constexpr MeasureRow kAngle      = {L"Angle",      L"<path> <path> [<path>] [/Exact] [/Plain] Gives the angle of two objects, or at the second of three", "%s%s%s", EMeasureType::Angle, Quantity::Angle, 2, 3, 1};
constexpr MeasureRow kDelta      = {L"Delta",      L"<path> <path> [/Exact] [/Plain] Gives the shortest way from one object to another: x, y, z", "%s%s", EMeasureType::DeltaX, Quantity::Length, 2, 2, 3};
// clang-format on

constexpr AreaRow kMeasureAreaRow = {kArea, L"Commands that measure objects of the active model"};

using Selections = std::vector<Vs::StrongRef<Vs::LogicalSelection>>;

bool measure(const Selections& objects, EMeasureType type, Vs::MeasureResult& result, Vs::Status& status)
{
    const Vs::MeasureMgr& manager = *Vs::MeasureMgr::get();
    switch (objects.size()) {
    case 1:
        return manager.measure(objects[0], type, result, &status);
    case 2:
        return manager.measure(objects[0], objects[1], type, result, &status);
    default:
        return manager.measure(objects[0], objects[1], objects[2], type, result, &status);
    }
}

bool find(const TextCommandParameters& parameters, Selections& objects, Vs::Status& status)
{
    Vs::Asset* asset = ActiveAssetUtils::asset();
    if (!asset) {
        status.addError(localized("MeasureNoModel", "There is no active model to measure in."));
        return false;
    }
    for (unsigned i = 0; i < parameters.parameters(); ++i) {
        const auto path = Vs::findPath(*asset, parameters[i], status);
        if (!path)
            return false;
        objects.emplace_back(new Vs::LogicalSelection(asset, *path, nullptr));
    }
    return true;
}

std::wstring textOf(double value, Quantity quantity, const TextCommandParameters& parameters)
{
    if (parameters.hasFlag(L"Plain"))
        return Vs::numberText(value);
    const bool exact = parameters.hasFlag(L"Exact");
    const Vs::Units::Unit unit = Vs::Units::Unit::display(quantity);
    return exact ? Vs::Units::toExactText(value, unit)
                 : Vs::Units::toText(value, unit, Vs::Units::UnitDisplaySettings::get());
}

template <const MeasureRow& kRow>
class TextCmdMeasure : public Vs::PythonEntry<TextCmdMeasure<kRow>, Vs::TextCommand>
{
public:
    TextCmdMeasure()
        : Vs::PythonEntry<TextCmdMeasure<kRow>, Vs::TextCommand>(kArea, kRow.name, kRow.help, kRow.format,
                                                                 true, true)
    {
    }

    TextCommandResult execute(const TextCommandParameters& parameters) override
    {
        if (parameters.parameters() < kRow.fewest || parameters.parameters() > kRow.most)
            return {1, std::wstring(L"Usage: ") + kArea + L"." + kRow.name + L" " + kRow.help};
        Vs::Status status;
        Selections objects;
        if (!find(parameters, objects, status))
            return {1, status.toString()};
        std::wstring text;
        for (int part = 0; part < kRow.parts; ++part) {
            Vs::MeasureResult result;
            if (!measure(objects, EMeasureType(int(kRow.type) + part), result, status))
                return {1, status.toString()};
            text += (part > 0 ? L", " : L"") + textOf(result.value, kRow.quantity, parameters);
        }
        return {0, text};
    }
};

const SubjectArea<kMeasureAreaRow> theArea;
TextCmdMeasure<kLength> theLength;
TextCmdMeasure<kRadius> theRadius;
TextCmdMeasure<kSurface> theAreaCommand;
TextCmdMeasure<kVolume> theVolume;
TextCmdMeasure<kLoopLength> theLoopLength;
TextCmdMeasure<kPosition> thePosition;
TextCmdMeasure<kDistance> theDistance;
TextCmdMeasure<kAngle> theAngle;
TextCmdMeasure<kDelta> theDelta;

} // namespace

} // namespace Vu
