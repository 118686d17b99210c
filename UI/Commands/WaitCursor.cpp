#include "UI/Commands/WaitCursor.h"

#include "Server/Base/ResourceMgr.h"
#include "UI/Base/View/CursorController.h"

namespace Vu::Commands {
namespace {
constexpr int kWaitCursor = 17;
}

WaitCursor::WaitCursor() : m_cursor(CursorController::make(0))
{
    m_cursor->cursor(Vs::CursorResource::defaultCursor(kWaitCursor));
    m_cursor->enabled(true);
}

WaitCursor::~WaitCursor()
{
    m_cursor->destroy();
}

} // namespace Vu::Commands
