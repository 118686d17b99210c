#include "UI/Commands/Measure/MeasureSelections.h"

#include "Server/Component/Component.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Measure/MeasureMgr.h"
#include "Server/DataModel/Selection/PathQueries.h"
#include "Server/DataModel/Selection/SelectionMgr.h"
#include "Server/DataModel/Selection/SelectionSet.h"
#include "UI/Base/Session/ActiveAssetUtils.h"
#include "UI/Base/Session/SelectionCommandInput.h"
#include "UI/Commands/Measure/MeasureState.h"

#include <string>
#include <vector>

namespace Vu::Commands {

namespace {

Vs::StrongRef<Vs::LogicalSelection> firstObject(const Vs::SelectionSet& set)
{
    for (const auto& selection : set.selections())
        if (auto* object = Vs::cast<Vs::LogicalSelection>(selection.get()))
            return Vs::StrongRef<Vs::LogicalSelection>(object);
    return nullptr;
}

/// Whether neither it nor an assembly around it is hidden.
bool isSeen(const Vs::Selection& selection)
{
    const auto* object = Vs::cast<Vs::LogicalSelection>(&selection);
    const std::string id = object ? object->componentId() : std::string();
    for (size_t end = 0; object && end != std::string::npos;) {
        end = id.find('/', end + 1);
        const Vs::Component* component = object->asset()->findComponent(id.substr(0, end));
        if (!component || !component->visible)
            return false;
    }
    return true;
}

/// While it lives, the change is the command's own.
class Changing
{
public:
    explicit Changing(bool& flag) : m_flag(flag) { m_flag = true; }
    ~Changing() { m_flag = false; }
    Changing(const Changing&) = delete;
    Changing& operator=(const Changing&) = delete;

private:
    bool& m_flag;
};

} // namespace

MeasureSelections::MeasureSelections(const Inputs& inputs, MeasureState& state)
    : m_inputs(inputs), m_state(state)
{
}

void MeasureSelections::enable(Vs::SelectionMgr* manager)
{
    const auto isFilled = [&](size_t row) { return !m_inputs[row]->selectionSet().empty(); };
    const bool points =
        Vs::MeasureMgr::get()->selectionTypes() & static_cast<unsigned>(Vs::ESelectionType::Vertex);
    m_inputs[1]->enabled(isFilled(0) || isFilled(1));
    SelectionCommandInput* third = m_inputs[2];
    third->enabled(points && (isFilled(1) || isFilled(2)));
    // What its field can't clear isn't shown either.
    if (manager)
        manager->collect(third, third->enabled() ? third->selectionSet().selections()
                                                 : std::vector<Vs::StrongRef<Vs::Selection>>());
}

void MeasureSelections::take(int number)
{
    SelectionCommandInput* input = m_inputs[size_t(number) - 1];
    const auto first = firstObject(input->selectionSet());
    m_state.selection(number) = input->enabled() ? first : nullptr;
    // The first is what counts; others stay only as part of what the user has selected.
    std::vector<Vs::StrongRef<Vs::Selection>> kept;
    const Vs::SelectionSet* selected = ActiveAssetUtils::selectionSet();
    for (const auto& each : input->selectionSet().selections())
        if (each.get() == first.get() || (selected && selected->contains(*each)))
            kept.push_back(each);
    if (kept.size() == input->selectionSet().size())
        return;
    const Changing own(m_changing);
    input->replace(kept);
}

void MeasureSelections::add(const Vs::SelectionSet& selected)
{
    // What was just hidden is still selected.
    size_t taken = 0;
    for (const auto& object : std::vector(selected.selections()))
        if (taken < 2 && isSeen(*object))
            m_inputs[taken++]->add(object);
}

void MeasureSelections::clear()
{
    const Changing own(m_changing);
    for (SelectionCommandInput* input : m_inputs)
        input->clear();
    if (Vs::SelectionSet* selected = ActiveAssetUtils::selectionSet())
        selected->clear();
}

void MeasureSelections::dropMissing(const Vs::Asset& asset)
{
    const Changing own(m_changing);
    for (SelectionCommandInput* input : m_inputs) {
        Vs::Status gone;
        const auto object = firstObject(input->selectionSet());
        if (object && !Vs::resolvePath(object->path(), asset, gone))
            input->clear();
    }
}

bool MeasureSelections::permits(const CommandInputBase* input, const Vs::Selection& selection) const
{
    const SelectionCommandInput* other = m_inputs[input == m_inputs[0] ? 1 : 0];
    return m_beginsAnew || !other->selectionSet().contains(selection);
}

Vs::StrongRef<Vs::Selection> MeasureSelections::firstAt(const MouseEvent& click)
{
    // It may be what is the second selection of the measurement that ends.
    const Changing anew(m_beginsAnew);
    return m_inputs[0]->under(click);
}

} // namespace Vu::Commands
