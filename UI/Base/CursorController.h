#pragma once

namespace Vs {
class CursorResource;
}

namespace Vu {

/// Shows a mouse pointer over the whole program for as long as it is enabled. Of several enabled ones the
/// last wins.
class CursorController
{
public:
    /// Destroyed by `destroy()`, by nothing else. The number is a priority; those in use are all 0.
    static CursorController* make(int priority);

    /// Not owned.
    void cursor(Vs::CursorResource* cursor);
    void enabled(bool value);
    bool enabled() const { return m_enabled; }
    void destroy();

private:
    explicit CursorController(int priority) : m_priority(priority) {}
    ~CursorController();
    static void update();

    Vs::CursorResource* m_cursor = nullptr;
    int m_priority;
    bool m_enabled = false;
};

} // namespace Vu
