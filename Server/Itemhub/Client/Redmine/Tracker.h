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

/// Requests to an issue tracker in the name of one of its users, by his key. Fails as ItemStore does.
class Tracker
{
public:
    using Query = std::vector<std::pair<const char*, std::string>>;

    explicit Tracker(const Access& access);

    /// The key of whoever has that password.
    [[nodiscard]] static std::string keyOf(const Access& where, const std::string& account,
                                           const std::string& password, const Watch& watch);

    [[nodiscard]] QUrl url(const std::string& path, const Query& query = {}) const;
    /// What is done and where, for messages.
    [[nodiscard]] std::string action(const std::string& doing) const;
    [[nodiscard]] Connections& connections() { return m_connections; }

    [[nodiscard]] JsonReader get(const std::string& path, const Query& query, const std::string& doing,
                                 const Watch& watch);
    /// The same with the server's clock, which says when it answered.
    [[nodiscard]] std::pair<JsonReader, QDateTime> getWithTime(const std::string& path, const Query& query,
                                                               const std::string& doing, const Watch& watch);
    /// Asks for a change, once. The answer may still be one that refuses it.
    [[nodiscard]] Network::Answer change(const char* method, const std::string& path, const QJsonObject& body,
                                         const Watch& watch);
    /// Asks for a change, and throws if it is refused.
    void changed(const char* method, const std::string& path, const QJsonObject& body,
                 const std::string& doing, const Watch& watch);
    /// The objects of all pages of a list, as long as there aren't more than a client should hold.
    [[nodiscard]] std::vector<JsonReader> list(const std::string& path, const char* name, Query query,
                                               const std::string& doing, const Watch& watch);
    /// Sends a file, which belongs to nothing yet; gives its token, which names it and its hash.
    [[nodiscard]] std::string upload(const std::string& file, std::uint64_t size, const Watch& watch);
    /// What a content hashes to, which the tracker tells nobody.
    [[nodiscard]] std::string sha256(const QUrl& content, const std::string& doing, const Watch& watch);
    /// The path and query below the tracker of an address that the store gave out.
    [[nodiscard]] QUrl below(const std::string& uri, const std::string& doing) const;

private:
    const QUrl m_address;
    Connections m_connections;
};

} // namespace Vs::Itemhub::Redmine
