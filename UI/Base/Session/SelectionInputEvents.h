#pragma once

#include "Server/Base/Require.h"
#include "UI/Base/Command/CommandInputEvents.h"

namespace Vs {
class Selection;
}

namespace Vu {

class MouseEvent;

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

/// A click in the canvas found nothing that the selection input takes.
class SelectionInputMissedEvent : public Vs::Implements<SelectionInputMissedEvent, CommandInputEvent>
{
public:
    /// The mouse event stays the caller's.
    SelectionInputMissedEvent(CommandInputBase* input, const MouseEvent& click)
        : Implements(input), m_click(click)
    {
    }
    const MouseEvent& click() const { return m_click; }
    /// Set by who does something with the click, so that the input doesn't.
    void taken(bool value) { m_taken = value; }
    bool taken() const { return m_taken; }

private:
    const MouseEvent& m_click;
    bool m_taken = false;
};

} // namespace Vu
