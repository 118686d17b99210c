#pragma once

#include "UI/Base/Command/CommandInputSet.h"
#include "UI/Base/Command/InputControl.h"

#include <array>
#include <memory>
#include <vector>

namespace Vu {
class ButtonCommandInput;
class ListCommandInput;
class MenuCommandInput;
class RealValueCommandInput;
class SelectionCommandInput;
} // namespace Vu

namespace Vu::Commands {

/// The bits of a mask of what is measured.
enum EMeasureTypeBit : unsigned {
    kMeasureDistance = 2, ///< Including lengths and radii.
    kMeasureAngle = 4,
    kMeasureArea = 8, ///< Including the lengths of loops.
    kMeasurePosition = 16,
    kMeasureVolume = 32,
};

/// The results for a single selection.
struct MeasureSide
{
    RealValueCommandInput* length = nullptr;
    RealValueCommandInput* radius = nullptr;
    RealValueCommandInput* area = nullptr;
    RealValueCommandInput* volume = nullptr;
    RealValueCommandInput* loopLength = nullptr;
    RealValueCommandInput* positionX = nullptr;
    RealValueCommandInput* positionY = nullptr;
    RealValueCommandInput* positionZ = nullptr;

    std::array<RealValueCommandInput*, 8> all() const
    {
        return {length, radius, area, volume, loopLength, positionX, positionY, positionZ};
    }
};

/// The results for two selections, and the angle of three.
struct MeasurePair
{
    RealValueCommandInput* distance = nullptr;
    RealValueCommandInput* angle = nullptr;
    RealValueCommandInput* deltaX = nullptr;
    RealValueCommandInput* deltaY = nullptr;
    RealValueCommandInput* deltaZ = nullptr;

    std::array<RealValueCommandInput*, 5> all() const { return {distance, angle, deltaX, deltaY, deltaZ}; }
};

/// The inputs of the measure command, in panel order. They belong to the set; the items of the controls
/// belong to this and must be destroyed before the set.
class MeasureInputs
{
public:
    explicit MeasureInputs(CommandInputSet* set);
    ~MeasureInputs();
    MeasureInputs(const MeasureInputs&) = delete;
    MeasureInputs& operator=(const MeasureInputs&) = delete;

    std::array<SelectionCommandInput*, 3> selections{};
    ListCommandInput* selectionTypes = nullptr;
    ButtonCommandInput* restart = nullptr;
    MenuCommandInput* measureTypes = nullptr;
    ListCommandInput* precision = nullptr;
    std::array<MeasureSide, 2> sides;
    MeasurePair pair;

    /// Every input that shows a result.
    std::vector<RealValueCommandInput*> results() const;
    /// Which of the sides the result belongs to; null for none.
    const MeasureSide* sideOf(const CommandInputBase* result) const;

    /// The bits of MeasureMgr's mask for the chosen item of the list; 0 if none is chosen.
    unsigned chosenSelectionTypes() const;
    /// Chooses the first item whose types are all in the mask.
    void chooseSelectionTypes(unsigned mask);

    /// The mask with the bits of the menu's items set as they are checked.
    unsigned checkedMeasureTypes(unsigned mask) const;
    void checkMeasureTypes(unsigned mask);

    /// The number of decimals for the chosen item.
    short chosenPrecision() const;

private:
    void makeSelectionGroup(CommandInputSet* set);
    void makeResultsGroup(CommandInputSet* set);
    void makeMeasureTypes(CommandInputSet* set);
    void makePrecision(CommandInputSet* set);

    std::vector<std::unique_ptr<MenuItem>> m_measureTypeItems;
};

} // namespace Vu::Commands
