#pragma once

#include "Server/Skyvault/Client/Dav/Session.h"

#include <string>
#include <vector>

namespace Vs::Cloud {

/// The last long listings of folders, for servers that give a folder another ETag with whatever changes in
/// it: as long as it has the same one, the listing isn't read again.
class Listings
{
public:
    DriveResult list(Session& session, const std::string& folder, std::vector<DriveEntry>& entries,
                     const DriveWatch& watch);
    /// After a change of ours, so that nothing is asked whose answer is known.
    void forget() { m_kept.clear(); }

private:
    struct Kept
    {
        DriveEntry folder;
        std::vector<DriveEntry> entries;
    };

    std::vector<Kept> m_kept; ///< The latest first.
};

} // namespace Vs::Cloud
