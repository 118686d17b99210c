#pragma once

#include "Server/Base/Event.h"

#include <memory>

namespace Vu {

/// Turns and moves the camera of the active view by a six-axis controller. Starts listening at the first
/// touch, through libspnav; without that library, or without a daemon that answers it, the site stays silent.
class SpaceMouseEventSite : public Vs::EventSite
{
public:
    static SpaceMouseEventSite* get();
    ~SpaceMouseEventSite() override;

    /// Whether a controller answers.
    bool connected() const { return m_driver != nullptr; }

private:
    class Driver;

    SpaceMouseEventSite();
    void read();

    std::unique_ptr<Driver> m_driver;
};

} // namespace Vu
