#pragma once

#include "Server/Base/Point2.h"

#include <string>

namespace Vs {
class CursorResource;
}

namespace Vu {

/// Shows a mouse pointer, over the whole program or over the canvases, for as long as it is enabled. Of
/// several enabled ones for one place the last wins; one for the whole program wins over those for the
/// canvases.
class CursorController
{
public:
    /// Destroyed only by `destroy()`. The number is a priority; those in use are all 0.
    [[nodiscard]] static CursorController* make(int priority);
    /// One for the canvases: what a tool shows.
    [[nodiscard]] static CursorController* makeForCanvases(int priority);
    /// Gives a canvas that is new the pointer that the others show.
    static void updateCanvases();

    /// Not owned.
    void cursor(Vs::CursorResource* cursor);
    void enabled(bool value);
    bool enabled() const { return m_enabled; }
    /// Shows a text beside a place of the active canvas, as long as this is the controller that counts there;
    /// empty for none.
    void hint(const std::wstring& text, const Vs::Point2& place = {});
    void destroy();

private:
    CursorController(int priority, bool canvases) : m_priority(priority), m_canvases(canvases) {}
    ~CursorController();
    void update() const;
    static void updateHint();

    Vs::CursorResource* m_cursor = nullptr;
    std::wstring m_hint;
    Vs::Point2 m_hintPlace;
    int m_priority;
    bool m_canvases;
    bool m_enabled = false;
};

} // namespace Vu
