#pragma once

#include "Server/Itemhub/Client/Redmine/Reader.h"

namespace Vs::Itemhub::Redmine {

/// What happened to the issues that the user sees, found by asking which of them changed. Events are counted
/// by the tracker's clock, in whole seconds since 1970; of a second, nothing is told before it is over.
class Changes
{
public:
    Changes(Tracker& tracker, Reader& reader);

    /// As ItemStore::events. After 0 there is nothing but the place to go on from.
    [[nodiscard]] ItemEvents events(std::int64_t after, int seconds, const Watch& watch);

private:
    [[nodiscard]] ItemEvents since(std::int64_t after, const Watch& watch);
    void add(std::vector<ItemEvent>& events, std::int64_t issue, std::int64_t after, const Watch& watch);

    Tracker& m_tracker;
    Reader& m_reader;
};

} // namespace Vs::Itemhub::Redmine
