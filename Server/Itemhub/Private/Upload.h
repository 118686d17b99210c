#pragma once

#include "Server/Itemhub/Private/QueueEntry.h"

#include <string>

namespace Vs::Itemhub {

/// Uploads one entry of the queue step by step. Each step's result is recorded before the next one
/// begins, so that a kill at any point repeats nothing that the service would do twice.
class Upload
{
public:
    /// `account` is the user's name at the service.
    Upload(QueueEntry& entry, ItemStore& store, std::string account, const Watch& watch);

    /// Returns once the version exists and the working file's record says so: the version's number, or 0
    /// for a content that the service has already. Throws as ItemStore does, and Vs::Exception for local
    /// files.
    [[nodiscard]] std::int64_t run();

private:
    /// False for a content that the service has already and that nobody wants as a version.
    [[nodiscard]] bool isWanted();
    void hash();
    void sendContent();
    void sendFrom(std::uint64_t there);
    void prepareRequest();
    /// What the service is asked for. The type of document only counts for a new attachment.
    [[nodiscard]] NewVersion newVersion(const std::string& docType) const;
    [[nodiscard]] MadeVersion post();
    [[nodiscard]] MadeVersion postOnTop(const Web::Version& latest);
    /// The version that an earlier run of this request made, if any.
    [[nodiscard]] std::optional<MadeVersion> madeBefore();
    [[nodiscard]] bool isOurs(const Web::Version& version) const;
    void beginAnew();
    [[nodiscard]] std::int64_t finish(const MadeVersion& made);

    QueueEntry& m_entry;
    ItemStore& m_store;
    const std::string m_account;
    const Watch& m_watch;
};

} // namespace Vs::Itemhub
