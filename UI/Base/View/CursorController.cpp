#include "UI/Base/View/CursorController.h"

#include "UI/Base/Program/Private/Display.h"
#include "UI/Base/View/GraphicsCanvas.h"
#include "UI/Base/Workspace/HUDManager.h"

#include <QCoreApplication>

#include <algorithm>
#include <vector>

namespace Vu {
namespace {

/// Those that are enabled, the last one winning.
std::vector<CursorController*>& enabledControllers(bool canvases)
{
    static std::vector<CursorController*> forProgram, forCanvases;
    return canvases ? forCanvases : forProgram;
}

} // namespace

CursorController* CursorController::make(int priority)
{
    return new CursorController(priority, false);
}

CursorController* CursorController::makeForCanvases(int priority)
{
    return new CursorController(priority, true);
}

CursorController::~CursorController() = default;

void CursorController::cursor(Vs::CursorResource* cursor)
{
    m_cursor = cursor;
    if (m_enabled)
        update();
}

void CursorController::hint(const std::wstring& text, const Vs::Point2& place)
{
    m_hint = text;
    m_hintPlace = place;
    if (m_enabled && m_canvases)
        updateHint();
}

void CursorController::updateHint()
{
    const std::vector<CursorController*>& controllers = enabledControllers(true);
    const CursorController* shown = controllers.empty() ? nullptr : controllers.back();
    HUDManager::get()->hint(shown ? shown->m_hint : std::wstring(),
                            shown ? shown->m_hintPlace : Vs::Point2());
}

void CursorController::enabled(bool value)
{
    if (value == m_enabled)
        return;
    m_enabled = value;
    std::vector<CursorController*>& controllers = enabledControllers(m_canvases);
    std::erase(controllers, this);
    if (value)
        controllers.insert(std::upper_bound(controllers.begin(), controllers.end(), this,
                                            [](const CursorController* a, const CursorController* b) {
                                                return a->m_priority < b->m_priority;
                                            }),
                           this);
    update();
}

void CursorController::destroy()
{
    enabled(false);
    delete this;
}

void CursorController::update() const
{
    if (m_canvases)
        updateHint();
    // Without a display there is no pointer to change.
    if (!QCoreApplication::instance())
        return;
    if (m_canvases) {
        updateCanvases();
        return;
    }
    const std::vector<CursorController*>& controllers = enabledControllers(false);
    const Vs::CursorResource* shown = controllers.empty() ? nullptr : controllers.back()->m_cursor;
    Display::get()->pointer(shown);
}

void CursorController::updateCanvases()
{
    const std::vector<CursorController*>& controllers = enabledControllers(true);
    const Vs::CursorResource* shown = controllers.empty() ? nullptr : controllers.back()->m_cursor;
    for (const GraphicsCanvas* canvas : GraphicsCanvas::existingCanvases())
        if (CanvasSurface* surface = canvas->surface())
            surface->pointer(shown);
}

} // namespace Vu
