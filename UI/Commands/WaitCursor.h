#pragma once

namespace Vu {
class CursorController;
}

namespace Vu::Commands {

/// Shows the wait cursor for as long as it lives: around every load and save.
class WaitCursor
{
public:
    WaitCursor();
    ~WaitCursor();
    WaitCursor(const WaitCursor&) = delete;
    WaitCursor& operator=(const WaitCursor&) = delete;

private:
    CursorController* m_cursor;
};

} // namespace Vu::Commands
