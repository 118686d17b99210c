#pragma once

#include "Server/Base/Event.h"

namespace Vs {
class Asset;
}

namespace Vu::Inference {

/// Something about snapping to the grid changed.
class SnapEvent : public Vs::Implements<SnapEvent, Vs::Event>
{
public:
    /// The asset may be null: no asset is active.
    explicit SnapEvent(Vs::Asset* asset) : m_asset(asset) {}

    Vs::Asset* asset() const { return m_asset; }

private:
    Vs::Asset* m_asset;
};

/// Listens to snapping. Each operation does nothing unless overridden.
class SnapEventSite : public Vs::EventSite
{
public:
    /// The numbers along the grid's axes were shown or hidden.
    virtual void gridNumbersToggled(SnapEvent*) {}
    /// One of the settings of the SnapManager changed.
    virtual void snapSettingsChanged(SnapEvent*) {}
};

/// Main thread only.
class SnapEventSource : public Vs::EventSource<SnapEventSite>
{
public:
    static SnapEventSource* get()
    {
        static auto* const source = new SnapEventSource;
        return source;
    }

    void fireGridNumbersToggled(SnapEvent* event) { fire(&SnapEventSite::gridNumbersToggled, event); }
    void fireSnapSettingsChanged(SnapEvent* event) { fire(&SnapEventSite::snapSettingsChanged, event); }
};

} // namespace Vu::Inference
