#pragma once

#include "Server/Base/OptionGroup.h"

namespace Vu::Inference {

/// Snapping of dragged points and values: to a grid whose step is a fixed length or follows the zoom. The
/// settings are the user's and outlive the program. Each change fires SnapEventSite::snapSettingsChanged.
/// Main thread only.
class SnapManager : public Vs::Implements<SnapManager, Vs::OptionGroup>
{
public:
    static SnapManager* get();

    /// Whether the step follows the zoom; else it is the increment. Default true.
    bool adaptiveSnap() const { return m_adaptive(); }
    void adaptiveSnap(bool value);
    /// In the unit of ActiveAssetUtils::findSimpleLengthUnit, always above 0. Default 1.
    double snapIncrement() const;
    /// Values that aren't finite and above 0 are ignored.
    void snapIncrement(double value);
    /// Whether distances snap at all. Default true.
    bool enableDistanceSnapping() const { return m_distances(); }
    void enableDistanceSnapping(bool value);

private:
    SnapManager();

    Vs::Option<bool> m_adaptive{*this, "adaptiveSnap", true};
    Vs::Option<double> m_increment{*this, "snapIncrement", 1.0};
    Vs::Option<bool> m_distances{*this, "enableDistanceSnapping", true};
};

} // namespace Vu::Inference
