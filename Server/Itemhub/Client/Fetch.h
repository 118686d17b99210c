#pragma once

#include "Server/Itemhub/Client/Connections.h"
#include "Server/Itemhub/ItemStore.h"
#include "Server/Network/Sha256.h"

#include <QFile>
#include <QUrl>

#include <optional>
#include <string>

namespace Vs::Itemhub {

/// Downloads one content to this machine, resuming where a connection broke off.
class Fetch
{
public:
    Fetch(Connections& connections, QUrl from, const Content& content, std::string action);

    /// For a server that doesn't support ranges: an interrupted download starts over.
    void fromTheStart() { m_isFromTheStart = true; }
    /// Creates the file once everything has arrived with the right hash. Throws as ItemStore does.
    void into(const std::string& file, const Watch& watch);

private:
    void fetch(const Watch& watch);
    void beginAnew();
    Network::Result take(const QByteArray& piece);
    void checkWhole();

    Connections& m_connections;
    const QUrl m_from;
    const Content& m_content;
    const std::string m_action;
    QFile m_file;
    std::optional<Network::Sha256> m_hash;
    std::uint64_t m_size = 0;
    bool m_isFromTheStart = false;
};

} // namespace Vs::Itemhub
