#pragma once

#include "Server/Skyvault/Client/Dav/Session.h"

#include <string>
#include <vector>

namespace Vs::Cloud {

/// A cache of the latest long listings, for servers on which any change within a folder changes the folder's
/// ETag: as long as that stays the same, the listing isn't read again.
class Listings
{
public:
    DriveResult list(Session& session, const std::string& folder, std::vector<DriveEntry>& entries,
                     const DriveWatch& watch);
    /// After a change of our own, to avoid a query whose answer is known.
    void forget() { m_kept.clear(); }

private:
    struct Kept
    {
        DriveEntry folder;
        std::vector<DriveEntry> entries;
    };

    std::vector<Kept> m_kept; ///< Latest first.
};

} // namespace Vs::Cloud
