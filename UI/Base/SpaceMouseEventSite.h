#pragma once

#include "Server/Base/Event.h"

namespace Vu {

/// Turns and moves the camera of the active view by a six-axis controller. Starts listening at the first
/// touch: on this system events come through the socket of the controller's daemon; without one the site
/// stays silent.
class SpaceMouseEventSite : public Vs::EventSite
{
public:
    static SpaceMouseEventSite* get();
    ~SpaceMouseEventSite() override;

    /// Whether a controller answers.
    bool connected() const { return m_socket >= 0; }

private:
    SpaceMouseEventSite();
    bool read();

    int m_socket = -1;
};

} // namespace Vu
