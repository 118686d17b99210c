#include "UI/Commands/Measure/MeasureInputs.h"

#include "UI/Base/Command/ControlCommandInputs.h"
#include "UI/Base/Command/GroupCommandInput.h"
#include "UI/Base/Command/RealValueCommandInput.h"
#include "UI/Base/Session/SelectionCommandInput.h"
#include "UI/Commands/CommandRow.h"
#include "UI/Commands/Localized.h"
#include "UI/Commands/Resources.h"

#include <map>

namespace Vu::Commands {

namespace {

using Vs::Units::Quantity;

constexpr int kNoNumber = 255;

// clang-format off
constexpr CommandRow kSelectionGroup = {.key = L"SelectionGroupInput", .title = "Selection", .tooltip = "What is measured", .tooltipKey = "infoSelectionGroup"};
constexpr CommandRow kSelectionTypes = {.key = L"SelectionTypesInput", .title = "Selection Types"};
constexpr CommandRow kSelections[] = {
    {.key = L"SelectionInput1", .title = "Select 1", .tooltip = "The first object to measure", .tooltipKey = "infoSel1"},
    {.key = L"SelectionInput2", .title = "Select 2", .tooltip = "The second object, to which distance and angle are measured", .tooltipKey = "infoSel2"},
    {.key = L"SelectionInput3", .title = "Select 3", .tooltip = "The third object, for the angle at the second", .tooltipKey = "infoSel3"},
};
constexpr CommandRow kRestart = {.key = L"RestartSelectionInput", .title = "Clear", .icon = &Resources::RestartSelection, .tooltip = "Clear all three selections", .tooltipKey = "infoRestart"};
constexpr CommandRow kResultsGroup = {.key = L"ResultsGroupInput", .title = "Results"};
constexpr CommandRow kMeasureTypes = {.key = L"MeasureTypesInput", .title = "Measure Types", .tooltip = "What is measured of the selections", .tooltipKey = "infoMeasureTypes"};
constexpr CommandRow kPrecision = {.key = L"PrecisionInput", .title = "Precision", .tooltip = "How many decimals are shown at most", .tooltipKey = "infoPrecision"};

/// One row for each result; `Holder` is MeasureSide or MeasurePair.
template <class Holder>
struct ResultRow
{
    int number;
    CommandRow info;
    Quantity quantity;
    RealValueCommandInput* Holder::*input;
};

constexpr ResultRow<MeasurePair> kPair[] = {
    {17, {.key = L"DistanceInput", .title = "Distance", .tooltip = "The shortest distance between the first two selections", .tooltipKey = "infoDistance"}, Quantity::Length, &MeasurePair::distance},
    {18, {.key = L"AngleInput", .title = "Angle", .tooltip = "The angle between the first two selections, or of three at the second", .tooltipKey = "infoAngle"}, Quantity::Angle, &MeasurePair::angle},
    {19, {.key = L"DeltaInputX", .title = "Delta X"}, Quantity::Length, &MeasurePair::deltaX},
    {20, {.key = L"DeltaInputY", .title = "Delta Y"}, Quantity::Length, &MeasurePair::deltaY},
    {21, {.key = L"DeltaInputZ", .title = "Delta Z"}, Quantity::Length, &MeasurePair::deltaZ},
};

// Some numbers occur twice: inputs are told apart as objects.
constexpr ResultRow<MeasureSide> kSides[2][8] = {{
    {3,  {.key = L"LengthInput1", .title = "Length 1", .tooltip = "The length of the first selection", .tooltipKey = "infoLength1"}, Quantity::Length, &MeasureSide::length},
    {5,  {.key = L"RadiusInput1", .title = "Radius 1", .tooltip = "The radius of the first selection", .tooltipKey = "infoRadius1"}, Quantity::Length, &MeasureSide::radius},
    {7,  {.key = L"AreaInput1", .title = "Area 1", .tooltip = "The area of the first selection", .tooltipKey = "infoArea1"}, Quantity::Area, &MeasureSide::area},
    {7,  {.key = L"VolumeInput1", .title = "Volume 1", .tooltip = "The volume of the first selection", .tooltipKey = "infoVolume1"}, Quantity::Volume, &MeasureSide::volume},
    {3,  {.key = L"LoopLengthInput1", .title = "Loop Length 1", .tooltip = "The length of the edges around the first selection", .tooltipKey = "infoLoopLength1"}, Quantity::Length, &MeasureSide::loopLength},
    {11, {.key = L"PositionInput1X", .title = "Position 1 X", .tooltip = "Where the first selection is, along X", .tooltipKey = "infoPosition1X"}, Quantity::Length, &MeasureSide::positionX},
    {12, {.key = L"PositionInput1Y", .title = "Position 1 Y", .tooltip = "Where the first selection is, along Y", .tooltipKey = "infoPosition1Y"}, Quantity::Length, &MeasureSide::positionY},
    {13, {.key = L"PositionInput1Z", .title = "Position 1 Z", .tooltip = "Where the first selection is, along Z", .tooltipKey = "infoPosition1Z"}, Quantity::Length, &MeasureSide::positionZ},
}, {
    {4,  {.key = L"LengthInput2", .title = "Length 2", .tooltip = "The length of the second selection", .tooltipKey = "infoLength2"}, Quantity::Length, &MeasureSide::length},
    {6,  {.key = L"RadiusInput2", .title = "Radius 2", .tooltip = "The radius of the second selection", .tooltipKey = "infoRadius2"}, Quantity::Length, &MeasureSide::radius},
    {8,  {.key = L"AreaInput2", .title = "Area 2", .tooltip = "The area of the second selection", .tooltipKey = "infoArea2"}, Quantity::Area, &MeasureSide::area},
    {8,  {.key = L"VolumeInput2", .title = "Volume 2", .tooltip = "The volume of the second selection", .tooltipKey = "infoVolume2"}, Quantity::Volume, &MeasureSide::volume},
    {4,  {.key = L"LoopLengthInput2", .title = "Loop Length 2", .tooltip = "The length of the edges around the second selection", .tooltipKey = "infoLoopLength2"}, Quantity::Length, &MeasureSide::loopLength},
    {14, {.key = L"PositionInput2X", .title = "Position 2 X", .tooltip = "Where the second selection is, along X", .tooltipKey = "infoPosition2X"}, Quantity::Length, &MeasureSide::positionX},
    {15, {.key = L"PositionInput2Y", .title = "Position 2 Y", .tooltip = "Where the second selection is, along Y", .tooltipKey = "infoPosition2Y"}, Quantity::Length, &MeasureSide::positionY},
    {16, {.key = L"PositionInput2Z", .title = "Position 2 Z", .tooltip = "Where the second selection is, along Z", .tooltipKey = "infoPosition2Z"}, Quantity::Length, &MeasureSide::positionZ},
}};

/// An item of one of the two menus, with the bits that it stands for.
struct ItemRow
{
    CommandRow info;
    const char* tooltipTitle;
    unsigned bits;
};

constexpr ItemRow kSelectionTypeItems[] = {
    {{.key = L"FaceEdgeVertexFilterInput", .title = "Face/Edge/Vertex of solid", .icon = &Resources::SelectFace, .tooltip = "Faces, edges and vertices of bodies can be selected.", .tooltipKey = "SelectionFilterFaceEdgeVertexDesc"}, "Select Face/Edge/Vertex", 11},
    {{.key = L"BodyFilterInput", .title = "Body", .icon = &Resources::SelectBody, .tooltip = "Whole bodies can be selected.", .tooltipKey = "SelectionFilterBodyDesc"}, "Select Body", 16},
};

constexpr ItemRow kMeasureTypeItems[] = {
    {{.key = L"MeasureTypeDistance", .title = "Distance", .titleKey = "DistanceType", .icon = &Resources::MeasureDistance, .tooltip = "Distances, lengths and radii are measured.", .tooltipKey = "MeasureTypeDistanceDesc"}, "Measure Distance", kMeasureDistance},
    {{.key = L"MeasureTypeAngle", .title = "Angle", .titleKey = "AngleType", .icon = &Resources::MeasureAngle, .tooltip = "Angles are measured.", .tooltipKey = "MeasureTypeAngleDesc"}, "Measure Angle", kMeasureAngle},
    {{.key = L"MeasureTypeArea", .title = "Area", .titleKey = "Area", .icon = &Resources::MeasureArea, .tooltip = "Areas and the lengths of loops are measured.", .tooltipKey = "MeasureTypeAreaDesc"}, "Measure Area", kMeasureArea},
    {{.key = L"MeasureTypeVolume", .title = "Volume", .titleKey = "Volume", .icon = &Resources::MeasureVolume, .tooltip = "Volumes are measured.", .tooltipKey = "MeasureTypeVolumeDesc"}, "Measure Volume", kMeasureVolume},
    {{.key = L"MeasureTypePositionDelta", .title = "Position/Delta", .titleKey = "Position", .icon = &Resources::MeasurePosition, .tooltip = "Positions and the distances along the axes are measured.", .tooltipKey = "MeasureTypePositionDesc"}, "Measure Position/Delta", kMeasurePosition},
};
/// The menu offers the first four; positions come on through an argument or an option alone.
constexpr size_t kOfferedMeasureTypes = 4;

struct PrecisionRow
{
    CommandRow info;
    short decimals;
};

constexpr PrecisionRow kPrecisions[] = {
    {{.key = L"Precision0", .title = "0"}, 0},
    {{.key = L"Precision1", .title = "0.1"}, 1},
    {{.key = L"Precision2", .title = "0.12"}, 2},
    {{.key = L"Precision3", .title = "0.123"}, 3},
    {{.key = L"Precision4", .title = "0.1234"}, 4},
    {{.key = L"Precision5", .title = "0.12345"}, 5},
    {{.key = L"Precision6", .title = "0.123456"}, 6},
    {{.key = L"Precision7", .title = "0.1234567"}, 7},
    {{.key = L"Precision8", .title = "0.12345678"}, 8},
    {{.key = L"PrecisionAll", .title = "All Decimals"}, Vs::Units::UnitDisplaySettings::kAllDecimals},
};
// clang-format on

/// The record of a row, made once and kept.
Info* infoOf(const CommandRow& row)
{
    static auto* const records = new std::map<const CommandRow*, Info>;
    const auto found = records->find(&row);
    return found != records->end() ? &found->second : &records->emplace(&row, makeInfo(row)).first->second;
}

Info* infoOf(const ItemRow& row)
{
    Info* info = infoOf(row.info);
    if (info->tooltip().extended().empty()) {
        const std::string key = std::string(row.info.tooltipKey) + "Title";
        info->tooltip(ToolTipInfo(localized(key.c_str(), row.tooltipTitle), info->tooltip().description()));
    }
    return info;
}

/// Something to look at, as long as there is a result.
RealValueCommandInput* makeResult(CommandInputSet* set, int number, const CommandRow& row, Quantity quantity)
{
    auto* input = RealValueCommandInput::make(set, number, infoOf(row), Vs::Units::Unit::display(quantity));
    input->hasMRU(false);
    input->readOnly(true);
    input->hiddenWhileDisabled(true);
    input->requiresExecution(false);
    input->disable();
    return input;
}

template <class Holder, size_t Count>
void makeResults(CommandInputSet* set, const ResultRow<Holder> (&rows)[Count], Holder& holder)
{
    for (const ResultRow<Holder>& row : rows)
        holder.*row.input = makeResult(set, row.number, row.info, row.quantity);
}

} // namespace

MeasureInputs::MeasureInputs(CommandInputSet* set)
{
    makeSelectionGroup(set);
    makeResultsGroup(set);
}

MeasureInputs::~MeasureInputs()
{
    selectionTypes->control()->items({});
    precision->control()->items({});
    measureTypes->control()->items({});
}

void MeasureInputs::makeSelectionGroup(CommandInputSet* set)
{
    GroupCommandInput* group = GroupCommandInput::make(set, kNoNumber, infoOf(kSelectionGroup));
    selectionTypes = ListCommandInput::make(set, 24, infoOf(kSelectionTypes));
    std::vector<Info*> items;
    for (const ItemRow& row : kSelectionTypeItems)
        items.push_back(infoOf(row));
    selectionTypes->control()->items(std::move(items));
    for (size_t i = 0; i < selections.size(); ++i) {
        selections[i] = SelectionCommandInput::make(set, static_cast<int>(i), infoOf(kSelections[i]));
        selections[i]->requiredQuantity(true, 1);
        selections[i]->required(false);
    }
    restart = ButtonCommandInput::make(set, 23, infoOf(kRestart));
    group->end();
}

void MeasureInputs::makeResultsGroup(CommandInputSet* set)
{
    GroupCommandInput* group = GroupCommandInput::make(set, kNoNumber, infoOf(kResultsGroup));
    makeMeasureTypes(set);
    makeResults(set, kPair, pair);
    for (size_t i = 0; i < sides.size(); ++i)
        makeResults(set, kSides[i], sides[i]);
    makePrecision(set);
    group->end();
}

void MeasureInputs::makeMeasureTypes(CommandInputSet* set)
{
    measureTypes = MenuCommandInput::make(set, 25, infoOf(kMeasureTypes));
    measureTypes->control()->presentationStyle(MenuControl::EPresentationStyle::Buttons);
    std::vector<MenuItem*> items;
    for (size_t i = 0; i < kOfferedMeasureTypes; ++i) {
        m_measureTypeItems.push_back(std::make_unique<MenuItem>(infoOf(kMeasureTypeItems[i])));
        items.push_back(m_measureTypeItems.back().get());
    }
    measureTypes->control()->items(std::move(items));
}

void MeasureInputs::makePrecision(CommandInputSet* set)
{
    precision = ListCommandInput::make(set, 26, infoOf(kPrecision));
    precision->enableTranscript(false);
    std::vector<Info*> items;
    for (const PrecisionRow& row : kPrecisions)
        items.push_back(infoOf(row.info));
    precision->control()->items(std::move(items));
    const short now = Vs::Units::UnitDisplaySettings::get().generalPrecision();
    for (const PrecisionRow& row : kPrecisions)
        if (row.decimals == now)
            precision->control()->selectedItem(infoOf(row.info), false);
}

std::vector<RealValueCommandInput*> MeasureInputs::results() const
{
    std::vector<RealValueCommandInput*> all;
    for (RealValueCommandInput* input : pair.all())
        all.push_back(input);
    for (const MeasureSide& side : sides)
        for (RealValueCommandInput* input : side.all())
            all.push_back(input);
    return all;
}

const MeasureSide* MeasureInputs::sideOf(const CommandInputBase* result) const
{
    for (const MeasureSide& side : sides)
        for (const RealValueCommandInput* input : side.all())
            if (input == result)
                return &side;
    return nullptr;
}

unsigned MeasureInputs::chosenSelectionTypes() const
{
    for (const ItemRow& row : kSelectionTypeItems)
        if (selectionTypes->value() == infoOf(row))
            return row.bits;
    return 0;
}

void MeasureInputs::chooseSelectionTypes(unsigned mask)
{
    for (const ItemRow& row : kSelectionTypeItems)
        if ((mask & row.bits) == row.bits) {
            selectionTypes->control()->selectedItem(infoOf(row), false);
            return;
        }
}

unsigned MeasureInputs::checkedMeasureTypes(unsigned mask) const
{
    for (const auto& item : m_measureTypeItems)
        for (const ItemRow& row : kMeasureTypeItems)
            if (item->info() == infoOf(row))
                mask = item->checked() ? mask | row.bits : mask & ~row.bits;
    return mask;
}

void MeasureInputs::checkMeasureTypes(unsigned mask)
{
    for (size_t i = 0; i < m_measureTypeItems.size(); ++i)
        measureTypes->control()->selectItem(m_measureTypeItems[i].get(), mask & kMeasureTypeItems[i].bits,
                                            false);
}

short MeasureInputs::chosenPrecision() const
{
    for (const PrecisionRow& row : kPrecisions)
        if (precision->value() == infoOf(row.info))
            return row.decimals;
    return Vs::Units::UnitDisplaySettings::get().generalPrecision();
}

} // namespace Vu::Commands
