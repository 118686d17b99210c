#pragma once

#include "Server/Itemhub/Client/Redmine/Reader.h"

namespace Vs::Itemhub::Redmine {

/// The files of issues as attachments with versions, and their transfer; see RedmineStore. Any thread.
class Versions
{
public:
    Versions(Tracker& tracker, Reader& reader);

    [[nodiscard]] std::vector<Web::Attachment> attachments(std::int64_t item, const Watch& watch);
    [[nodiscard]] std::vector<Web::Version> versions(std::int64_t attachment, const Watch& watch);
    [[nodiscard]] Content content(const std::string& uri, const Watch& watch);
    [[nodiscard]] Content content(std::int64_t attachment, std::int64_t version, const Watch& watch);

    [[nodiscard]] std::string beginUpload(std::uint64_t size, const std::string& sha256);
    [[nodiscard]] std::uint64_t arrived(const std::string& upload);
    /// All of it: the tracker accepts a file only as a whole.
    void upload(const std::string& upload, const std::string& file, const Watch& watch);
    [[nodiscard]] MadeVersion add(const NewVersion& version, const Watch& watch);

private:
    /// An upload that was begun in this run; the tracker itself keeps no record of it.
    struct Announced
    {
        std::uint64_t size = 0;
        std::string sha256, token;
    };

    [[nodiscard]] Announced announced(const std::string& upload, const std::string& doing);
    /// 0 for the newest.
    [[nodiscard]] Content contentOf(std::int64_t attachment, std::int64_t number, const std::string& doing,
                                    const Watch& watch);
    /// The hash of a file whose description doesn't state it.
    [[nodiscard]] std::string hashed(std::int64_t file, const QUrl& address, const std::string& doing,
                                     const Watch& watch);
    void refuseOutdated(const std::vector<File>& known, std::int64_t madeFrom,
                        const std::string& doing) const;
    void attach(const NewVersion& version, const std::string& name, const FileNote& note,
                const std::string& token, const std::string& doing, const Watch& watch);

    Tracker& m_tracker;
    Reader& m_reader;
    std::mutex m_mutex;
    std::map<std::string, Announced> m_uploads;
    std::map<std::int64_t, std::string> m_hashes;
};

} // namespace Vs::Itemhub::Redmine
