#pragma once

#include "Server/Itemhub/Client/Connections.h"
#include "Server/Itemhub/Client/JsonReader.h"
#include "Server/Itemhub/ItemStore.h"

#include <QUrl>

#include <atomic>
#include <utility>

namespace Vs::Itemhub {

/// The lifecycle service as an ItemStore: its requests over HTTP.
class HttpStore : public ItemStore
{
public:
    explicit HttpStore(const Access& access);

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
    DashboardRequest takeRequest(std::int64_t id, const Watch& watch) override;
    DashboardRequest redeemTicket(const std::string& ticket, const Watch& watch) override;
    void answerRequest(std::int64_t id, DashboardAnswer answer, const std::string& detail,
                       const Watch& watch) override;

    /// `keeper` receives renewed credentials, on an arbitrary thread.
    void onRenewed(std::function<void(const Access&)> keeper);

private:
    using Query = std::vector<std::pair<const char*, std::string>>;

    [[nodiscard]] QUrl url(const std::string& path, const Query& query = {}) const;
    [[nodiscard]] std::string action(const std::string& doing) const;
    [[nodiscard]] JsonReader get(const std::string& path, const Query& query, const std::string& doing,
                                 const Watch& watch);
    [[nodiscard]] JsonReader post(const std::string& path, const QJsonObject& body, const std::string& key,
                                  const std::string& doing, const Watch& watch);
    /// Sends a request that must happen at most once, and so isn't retried.
    [[nodiscard]] JsonReader once(const char* method, const std::string& path, const QJsonObject& body,
                                  const std::string& doing, const Watch& watch);
    /// All pages of a list, up to the number of entries that a client should hold.
    template <class Value>
    std::vector<Value> list(const std::string& path, const char* name, Value (*read)(const JsonReader&),
                            const std::string& doing, const Watch& watch);
    /// The path, relative to the service, of an address that the service gave out.
    [[nodiscard]] std::string pathOf(const std::string& uri, const std::string& doing) const;

    const QUrl m_address;
    const std::string m_customer;
    const bool m_isOwn;
    Connections m_connections;
    std::atomic<std::int64_t> m_granted; ///< The token to revoke on sign-out; 0 for none.
};

} // namespace Vs::Itemhub
