#pragma once

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
    /// Destroyed by `destroy()`, by nothing else. The number is a priority; those in use are all 0.
    static CursorController* make(int priority);
    /// One for the canvases: what a tool shows.
    static CursorController* makeForCanvases(int priority);
    /// Gives a canvas that is new the pointer that the others show.
    static void updateCanvases();

    /// Not owned.
    void cursor(Vs::CursorResource* cursor);
    void enabled(bool value);
    bool enabled() const { return m_enabled; }
    void destroy();

private:
    CursorController(int priority, bool canvases) : m_priority(priority), m_canvases(canvases) {}
    ~CursorController();
    void update() const;

    Vs::CursorResource* m_cursor = nullptr;
    int m_priority;
    bool m_canvases;
    bool m_enabled = false;
};

} // namespace Vu
