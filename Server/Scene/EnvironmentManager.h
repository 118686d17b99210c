#pragma once

#include "Server/Scene/Environment.h"

#include <string>
#include <vector>

namespace Vs::Scene {

/// The available environments, and the one that all views show. Main thread only, but environments are
/// immutable and may be read anywhere.
class EnvironmentManager
{
public:
    static EnvironmentManager* getEnvManager();

    /// What was set last, in this run or an earlier one, verbatim; the default if nothing was.
    std::wstring activeEnvironmentID() const;
    /// Stores the id among the user's options, whose sites are notified. Any id is kept, so that one from a
    /// later version survives this one; `environment` says how unknown ones look.
    void activeEnvironmentID(const std::wstring& id);

    /// What views show until something is set: "PhotoBooth", or what suits a window in dark colours. Existing
    /// views are not notified. Not stored.
    void usualEnvironmentID(const std::wstring& id) { m_usual = id; }

    const Environment& activeEnvironment() const { return environment(activeEnvironmentID()); }
    /// "DarkSky", "GreyRoom", "PhotoBooth", "TranquilityBlue", "InfinityPool" or "SkyRoom"; "SkyRoomPool" is
    /// a synonym of the last. Any other id looks like "PhotoBooth".
    [[nodiscard]] const Environment& environment(const std::wstring& id) const;
    /// In the order in which they are named above.
    const std::vector<Environment>& environments() const;

private:
    EnvironmentManager();

    std::wstring m_usual;
};

} // namespace Vs::Scene
