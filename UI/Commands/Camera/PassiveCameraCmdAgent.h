#pragma once

#include "UI/Base/View/MouseEvents.h"

namespace Vu {
class CommandBase;
class CommandDefinition;
} // namespace Vu

namespace Vu::Commands {

/// Navigation without any tool being chosen: a press of the middle or right button in a canvas starts a
/// camera command over whatever is active, and its release ends it; a double click fits, the wheel zooms. One
/// for the process; it listens from its first touch on.
class PassiveCameraCmdAgent : public MouseEventSite
{
public:
    static PassiveCameraCmdAgent* get();

    void mouseDown(MouseEvent* event) override;
    void mouseDoubleClick(MouseEvent* event) override;
    void mouseUp(MouseEvent* event) override;
    void mouseScroll(MouseEvent* event) override;

private:
    PassiveCameraCmdAgent();
    void start(CommandDefinition* definition);

    CommandBase* m_passiveCommand = nullptr; ///< Not owned, and only compared: it may have gone by now.
    bool m_panHeld = false;
    bool m_orbitHeld = false; ///< Never true: the wheel zooms while an orbit is held.
    Vs::Subscriptions m_subscriptions;
};

} // namespace Vu::Commands
