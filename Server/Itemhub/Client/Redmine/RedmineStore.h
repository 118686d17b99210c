#pragma once

#include "Server/Itemhub/Client/Redmine/Changes.h"
#include "Server/Itemhub/Client/Redmine/Reader.h"
#include "Server/Itemhub/Client/Redmine/Versions.h"

#include <optional>
#include <set>

namespace Vs::Itemhub::Redmine {

/// An issue tracker (Redmine 5) as an ItemStore. Projects are workspaces and issues are items; an issue's
/// files of the same name are the versions of an attachment, labelled by the note that came with the file;
/// other notes are comments; the issues that the user watches are his favourites.
///
/// The tracker has no conditional updates: whether a version was made from the newest one is checked
/// before and after the change, and whoever came second removes his own. It has no event log either, so it is
/// polled every few seconds for changed issues.
class RedmineStore : public ItemStore
{
public:
    explicit RedmineStore(const Access& access);

    Account account(const Watch& watch) override;
    void signOut() override;
    std::vector<Web::Workspace> workspaces(const Watch& watch) override;
    Web::Workspace workspace(std::int64_t id, const Watch& watch) override;
    std::vector<Web::Item> items(const Web::Workspace& workspace, const Watch& watch) override;
    Web::Item item(std::int64_t id, const Watch& watch) override;
    Web::Item addItem(const NewItem& item, const std::string& key, const Watch& watch) override;
    std::vector<Web::Attachment> attachments(std::int64_t item, const Watch& watch) override;
    std::vector<Web::Version> versions(std::int64_t attachment, const Watch& watch) override;
    Content content(const std::string& uri, const Watch& watch) override;
    Content content(std::int64_t attachment, std::int64_t version, const Watch& watch) override;
    void download(const Content& content, const std::string& file, const Watch& watch) override;
    std::vector<Web::Item> favourites(const Watch& watch) override;
    void favourite(std::int64_t item, bool isFavourite, const Watch& watch) override;
    std::vector<Web::Item> search(const std::string& text, int most, const Watch& watch) override;
    std::vector<Web::Comment> comments(std::int64_t item, const Watch& watch) override;
    Web::Comment addComment(std::int64_t item, const std::string& body, const std::string& key,
                            const Watch& watch) override;
    ItemEvents events(std::int64_t after, int seconds, const Watch& watch) override;
    std::string beginUpload(std::uint64_t size, const std::string& sha256, const Watch& watch) override;
    std::uint64_t arrived(const std::string& upload, const Watch& watch) override;
    void upload(const std::string& upload, const std::string& file, std::uint64_t from,
                const Watch& watch) override;
    MadeVersion addVersion(const NewVersion& version, const Watch& watch) override;
    std::string dashboard(const Watch& watch) override;

private:
    [[nodiscard]] std::vector<Web::Item> itemsOf(const std::vector<JsonReader>& issues, const Watch& watch);
    [[nodiscard]] std::set<std::int64_t> watched(const Watch& watch);
    /// The user's newest issues in a project.
    [[nodiscard]] std::vector<Web::Item> ownNewest(std::int64_t project, const std::string& doing,
                                                   const Watch& watch);

    Tracker m_tracker;
    Reader m_reader;
    Versions m_versions;
    Changes m_changes;
};

} // namespace Vs::Itemhub::Redmine
