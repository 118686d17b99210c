#include "UI/Base/Session/Private/SelectionPointer.h"

#include "Server/DataModel/Selection/SelectionMgr.h"
#include "UI/Base/Command/CommandInputSet.h"
#include "UI/Base/Command/InteractiveCommandBase.h"
#include "UI/Base/Session/AssetSession.h"
#include "UI/Base/Session/Private/CanvasPicker.h"
#include "UI/Base/Session/Private/InputFilter.h"
#include "UI/Base/Session/Private/RubberBand.h"
#include "UI/Base/Session/SelectionInputEvents.h"
#include "UI/Base/View/GraphicsCanvas.h"

#include <utility>

namespace Vu {

SelectionPointer::SelectionPointer(SelectionCommandInput& input) : m_input(input)
{
    m_subscriptions.add(MouseEventSource::get(), this);
}

SelectionPointer::~SelectionPointer() = default;

void SelectionPointer::mouseMove(MouseEvent* event)
{
    if (!m_input.pickingManager())
        return;
    CommandInUse inUse(m_input.commandInputSet()->command());
    // A command may take its preview back when it hears of it, and then something else is there.
    if (pointAt(m_input.under(*event)) && m_input.pickingManager())
        pointAt(m_input.under(*event));
}

// What others have highlighted stays.
void SelectionPointer::mouseLeave(GraphicsCanvas*)
{
    if (!m_pointing || !m_input.pickingManager())
        return;
    CommandInUse inUse(m_input.commandInputSet()->command());
    pointAt(nullptr);
}

bool SelectionPointer::pointAt(const Vs::StrongRef<Vs::Selection>& selection)
{
    Vs::SelectionSet& lit = m_input.pickingManager()->highlightSet();
    if (selection ? lit.contains(*selection) : lit.empty() && !m_pointing)
        return false;
    lit.clear();
    if (selection)
        lit.add(selection);
    m_pointing = selection != nullptr;
    SelectionInputPreselectionEvent event(&m_input, selection.get());
    m_input.commandInputSet()->fire(&event);
    return true;
}

void SelectionPointer::mouseDragBegin(MouseEvent* event)
{
    m_dragged = true;
    if (!m_pressed || m_input.m_exactly || !m_input.pickingManager() || event->button() != kLeftButton ||
        !event->canvas())
        return;
    m_band = std::make_unique<RubberBand>(*event);
    pointAt(nullptr);
}

void SelectionPointer::mouseDrag(MouseEvent* event)
{
    if (m_band)
        m_band->pullTo(*event);
}

void SelectionPointer::mouseDragEnd(MouseEvent* event)
{
    const std::unique_ptr<RubberBand> band = std::move(m_band);
    const AssetSession* session = m_input.commandInputSet()->command()->assetSession();
    if (!band || !session || !m_input.pickingManager())
        return;
    CommandInUse inUse(m_input.commandInputSet()->command());
    band->pullTo(*event);
    std::vector<Vs::StrongRef<Vs::Selection>> accepted;
    const InputFilter wanted(m_input);
    for (const auto& object : objectsIn(*event->canvas(), band->band(), *session, wanted.filter()))
        if (m_input.accepts(object))
            accepted.push_back(object);
    m_input.take(accepted, event->modifierMask());
}

bool SelectionPointer::giveUp()
{
    return std::exchange(m_band, nullptr) != nullptr;
}

void SelectionPointer::mouseDown(MouseEvent* event)
{
    const AssetSession* session = m_input.commandInputSet()->command()->assetSession();
    m_pressed = event->button() == kLeftButton && m_input.pickingManager() && session &&
                shows(event->canvas(), *session);
}

// The click is that of the input that was current when the button went down: the one that takes it makes
// another one current.
void SelectionPointer::mouseUp(MouseEvent* event)
{
    const bool dragged = std::exchange(m_dragged, false);
    if (event->button() != kLeftButton || !std::exchange(m_pressed, false) || dragged ||
        !m_input.pickingManager())
        return;
    CommandInUse inUse(m_input.commandInputSet()->command());
    const Vs::StrongRef<Vs::Selection> found = m_input.under(*event);
    if (!found) {
        SelectionInputMissedEvent missed(&m_input, *event);
        m_input.commandInputSet()->fire(&missed);
        if (missed.taken())
            return;
    }
    m_input.click(found, event->modifierMask());
}

} // namespace Vu
