#pragma once

#include "Server/Itemhub/Client/Connections.h"
#include "Server/Itemhub/Client/JsonReader.h"
#include "Server/Itemhub/ItemStore.h"

#include <QDateTime>
#include <QUrl>

#include <string>
#include <utility>
#include <vector>

namespace Vs::Itemhub::Redmine {

/// Whether an address names an issue tracker, as "redmine+https://tracker.example.org/".
[[nodiscard]] bool isAddress(const std::string& address);

/// Requests to an issue tracker on behalf of one of its users, authenticated by his key. Fails as
/// ItemStore does.
class Tracker
{
public:
    using Query = std::vector<std::pair<const char*, std::string>>;

    explicit Tracker(const Access& access);

    /// The key of the user with this password.
    [[nodiscard]] static std::string keyOf(const Access& where, const std::string& account,
                                           const std::string& password, const Watch& watch);

    [[nodiscard]] QUrl url(const std::string& path, const Query& query = {}) const;
    /// What is being done and where, for messages.
    [[nodiscard]] std::string action(const std::string& doing) const;
    [[nodiscard]] Connections& connections() { return m_connections; }

    [[nodiscard]] JsonReader get(const std::string& path, const Query& query, const std::string& doing,
                                 const Watch& watch);
    /// The same with the server's time of the response.
    [[nodiscard]] std::pair<JsonReader, QDateTime> getWithTime(const std::string& path, const Query& query,
                                                               const std::string& doing, const Watch& watch);
    /// Requests a change, once. The response may still be a refusal.
    [[nodiscard]] Network::Answer change(const char* method, const std::string& path, const QJsonObject& body,
                                         const Watch& watch);
    /// Requests a change, and throws if it is refused.
    void changed(const char* method, const std::string& path, const QJsonObject& body,
                 const std::string& doing, const Watch& watch);
    /// The objects on all pages of a list, up to the number of entries that a client should hold.
    [[nodiscard]] std::vector<JsonReader> list(const std::string& path, const char* name, Query query,
                                               const std::string& doing, const Watch& watch);
    /// Uploads a file, not yet attached to anything; returns its token, which contains its number and
    /// hash.
    [[nodiscard]] std::string upload(const std::string& file, std::uint64_t size, const Watch& watch);
    /// The hash of a content, which the tracker doesn't report.
    [[nodiscard]] std::string sha256(const QUrl& content, const std::string& doing, const Watch& watch);
    /// The path and query, relative to the tracker, of an address that the store gave out.
    [[nodiscard]] QUrl below(const std::string& uri, const std::string& doing) const;

private:
    const QUrl m_address;
    Connections m_connections;
};

} // namespace Vs::Itemhub::Redmine
