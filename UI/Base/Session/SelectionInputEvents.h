#pragma once

#include "Server/Base/Require.h"
#include "UI/Base/Command/CommandInputEvents.h"

namespace Vs {
class Selection;
}

namespace Vu {

/// A selection input asks whether it may take what lies under the pointer.
class SelectionInputQuerySelectPermittedEvent
    : public Vs::Implements<SelectionInputQuerySelectPermittedEvent, CommandInputEvent>
{
public:
    /// The selection is never null and stays the caller's.
    SelectionInputQuerySelectPermittedEvent(CommandInputBase* input, Vs::Selection* selection)
        : Implements(input), m_selection(selection)
    {
        Vs::require(selection != nullptr, "a selection that is asked about is there");
    }
    Vs::Selection* selection() const { return m_selection; }
    bool permitted() const { return m_permitted; }
    void permitted(bool value) { m_permitted = value; }

private:
    Vs::Selection* m_selection;
    bool m_permitted = true;
};

/// What a click would put into a selection input is another thing now.
class SelectionInputPreselectionEvent
    : public Vs::Implements<SelectionInputPreselectionEvent, CommandInputEvent>
{
public:
    SelectionInputPreselectionEvent(CommandInputBase* input, Vs::Selection* selection)
        : Implements(input), m_selection(selection)
    {
    }
    /// Null if a click would take nothing.
    Vs::Selection* selection() const { return m_selection; }

private:
    Vs::Selection* m_selection;
};

} // namespace Vu
