#pragma once

#include "Server/Itemhub/Client/Connections.h"
#include "Server/Itemhub/ItemStore.h"
#include "Server/Network/Sha256.h"

#include <QFile>
#include <QUrl>

#include <string>

namespace Vs::Itemhub {

/// Brings one content to this machine. What breaks off goes on where it was.
class Fetch
{
public:
    Fetch(Connections& connections, QUrl from, const Content& content, std::string action);

    /// Makes the file, when all of it has come and has the right hash. Throws as ItemStore does.
    void into(const std::string& file, const Watch& watch);

private:
    void fetch(const Watch& watch);
    Network::Result take(const QByteArray& piece);
    void checkWhole();

    Connections& m_connections;
    const QUrl m_from;
    const Content& m_content;
    const std::string m_action;
    QFile m_file;
    Network::Sha256 m_hash;
    std::uint64_t m_size = 0;
};

} // namespace Vs::Itemhub
