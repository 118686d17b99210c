#pragma once

#include "Server/Scene/Environment.h"

#include <map>
#include <memory>
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
    /// a synonym of the last. The path of a .hdr file is that picture, which is read when it is first needed;
    /// one that can't be read, and any other id, looks like "PhotoBooth". Environments live as long as the
    /// program.
    [[nodiscard]] const Environment& environment(const std::wstring& id) const;
    /// Reads the picture, also if it was read before, and returns the id under which it is an environment.
    /// Throws Vs::Exception, as Panorama::read.
    std::wstring read(const std::wstring& path);
    /// In the order in which they are named above, without files.
    const std::vector<Environment>& environments() const;

private:
    EnvironmentManager();

    const Environment& fromFile(const std::wstring& path) const;

    std::wstring m_usual;
    /// By their paths; null for what can't be read. Older ones of a path stay, since pictures may show them.
    mutable std::map<std::wstring, const Environment*> m_files;
    mutable std::vector<std::unique_ptr<const Environment>> m_fromFiles;
};

} // namespace Vs::Scene
