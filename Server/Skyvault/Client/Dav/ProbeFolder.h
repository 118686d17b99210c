#pragma once

#include "Server/Skyvault/Client/Dav/Session.h"

#include <string>

namespace Vs::Cloud {

/// The folder of a probe, for the lifetime of this object. Its name is chosen and noted at the start; the
/// probe creates it.
class ProbeFolder
{
public:
    ProbeFolder(Session& session, const std::string& within);
    ~ProbeFolder();
    ProbeFolder(const ProbeFolder&) = delete;
    ProbeFolder& operator=(const ProbeFolder&) = delete;

    std::string file(const std::string& name) const { return joined(m_path, name); }
    const std::string& path() const { return m_path; }

    /// Removes the folders of killed programs of this machine, as far as the server lists them.
    DriveResult removeOthers(const DriveWatch& watch) const;

private:
    /// Whether it is gone.
    bool remove(const std::string& path) const;

    Session& m_session;
    const std::string m_within, m_path;
    Leftovers::Note m_note;
};

} // namespace Vs::Cloud
