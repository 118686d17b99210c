#pragma once

#include "Server/DataModel/Selection/Selection.h"

#include <array>

namespace Vs {
class Asset;
class SelectionMgr;
class SelectionSet;
} // namespace Vs

namespace Vu {
class CommandInputBase;
class MouseEvent;
class SelectionCommandInput;
} // namespace Vu

namespace Vu::Commands {

class MeasureState;

/// The three selection inputs of the measure command: which of them can take something, and which of what
/// they hold is measured. Numbers of inputs begin with 1.
class MeasureSelections
{
public:
    using Inputs = std::array<SelectionCommandInput*, 3>;

    /// Both must outlive it. What is measured goes into `state`.
    MeasureSelections(const Inputs& inputs, MeasureState& state);

    /// Enables one after the other; the third only where there is something that it can take. The manager,
    /// null while the command doesn't run, shows what is left of it.
    void enable(Vs::SelectionMgr* manager);
    /// Makes the first object of an input what is measured.
    void take(int number);
    /// Puts the first two objects that can be seen into the first two inputs.
    void add(const Vs::SelectionSet& selected);
    /// Clears all of them, and the user's selection.
    void clear();
    /// Clears those whose objects are no longer in the asset.
    void dropMissing(const Vs::Asset& asset);

    /// Whether it is changing the inputs by itself right now.
    bool changing() const { return m_changing; }
    /// Whether an input may take it: nothing is measured against itself.
    bool permits(const CommandInputBase* input, const Vs::Selection& selection) const;
    /// What lies there for the first input of another measurement; null for nothing.
    Vs::StrongRef<Vs::Selection> firstAt(const MouseEvent& click);

private:
    const Inputs m_inputs;
    MeasureState& m_state;
    bool m_changing = false;
    bool m_beginsAnew = false; ///< Looking for the first selection of another measurement.
};

} // namespace Vu::Commands
