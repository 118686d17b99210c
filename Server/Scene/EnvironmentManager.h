#pragma once

#include "Server/Scene/Environment.h"

#include <string>
#include <vector>

namespace Vs::Scene {

/// The environments that there are, and the one that all views show. Main thread only, but environments are
/// never changed and may be read anywhere.
class EnvironmentManager
{
public:
    static EnvironmentManager* getEnvManager();

    /// What was set last, in this run or an earlier one, letter by letter; the usual one if nothing was.
    std::wstring activeEnvironmentID() const;
    /// Keeps the id among the user's options, whose sites hear of it. Any id is kept, so that one of a later
    /// version survives being seen by this one; how unknown ones look says `environment`.
    void activeEnvironmentID(const std::wstring& id);

    /// What views show as long as nothing was set: "PhotoBooth", or what suits a window in dark colours.
    /// Views that are there are not told. Isn't kept.
    void usualEnvironmentID(const std::wstring& id) { m_usual = id; }

    const Environment& activeEnvironment() const { return environment(activeEnvironmentID()); }
    /// "DarkSky", "GreyRoom", "PhotoBooth", "TranquilityBlue", "InfinityPool" or "SkyRoom"; "SkyRoomPool" is
    /// the last one as well. Any other id looks like "PhotoBooth".
    [[nodiscard]] const Environment& environment(const std::wstring& id) const;
    /// In the order in which they are named above.
    const std::vector<Environment>& environments() const;

private:
    EnvironmentManager();

    std::wstring m_usual;
};

} // namespace Vs::Scene
