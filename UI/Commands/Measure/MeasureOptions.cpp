#include "UI/Commands/Measure/MeasureOptions.h"

#include "UI/Base/Program/UIInternalOptionGroup.h"
#include "UI/Commands/Measure/MeasureInputs.h"

namespace Vu::Commands {

namespace {

constexpr const char* kMeasureTypesOption = "MeasureCmd_measureTypes";
constexpr const char* kSelectionTypesOption = "MeasureCmd_selectionTypes";
/// What is measured, and what can be selected, where no option says.
constexpr unsigned kUsualMeasureTypes = kMeasureDistance | kMeasureAngle | kMeasureArea | kMeasureVolume;
constexpr unsigned kAllSelectionTypes = 31;

/// The option's value; it is kept as `fallBack` where there is none yet.
unsigned optionOf(const char* name, unsigned fallBack)
{
    UIInternalOptionGroup* options = UIInternalOptionGroup::get();
    constexpr int kMissing = -1;
    int value = options->value(name, kMissing);
    if (value == kMissing)
        options->setValue(name, value = static_cast<int>(fallBack));
    return static_cast<unsigned>(value);
}

} // namespace

void MeasureOptions::make()
{
    optionOf(kMeasureTypesOption, 0);
    optionOf(kSelectionTypesOption, 0);
}

unsigned MeasureOptions::measureTypes(std::optional<unsigned> given)
{
    const unsigned kept = optionOf(kMeasureTypesOption, given.value_or(0));
    const unsigned types = given.value_or(kept);
    return types ? types : kUsualMeasureTypes;
}

unsigned MeasureOptions::selectionTypes()
{
    const unsigned kept = optionOf(kSelectionTypesOption, 0);
    return kept ? kept : kAllSelectionTypes;
}

void MeasureOptions::keep(unsigned selectionTypes, unsigned measureTypes)
{
    UIInternalOptionGroup* options = UIInternalOptionGroup::get();
    options->setValue(kSelectionTypesOption, static_cast<int>(selectionTypes));
    options->setValue(kMeasureTypesOption, static_cast<int>(measureTypes));
}

} // namespace Vu::Commands
