#pragma once

#include "Server/Itemhub/Client/Redmine/Reader.h"

namespace Vs::Itemhub::Redmine {

/// What happened to the issues that the user can see, found by polling for changed ones. Event serials
/// are the tracker's time in whole seconds since 1970; a second is reported only once it is over.
class Changes
{
public:
    Changes(Tracker& tracker, Reader& reader);

    /// See ItemStore::events. From 0, only the serial to continue from is returned.
    [[nodiscard]] ItemEvents events(std::int64_t after, int seconds, const Watch& watch);

private:
    [[nodiscard]] ItemEvents since(std::int64_t after, const Watch& watch);
    void add(std::vector<ItemEvent>& events, std::int64_t issue, std::int64_t after, const Watch& watch);

    Tracker& m_tracker;
    Reader& m_reader;
};

} // namespace Vs::Itemhub::Redmine
