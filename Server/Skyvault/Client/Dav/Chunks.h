#pragma once

#include "Server/Skyvault/Client/Dav/Session.h"

#include <string>

namespace Vs::Cloud {

/// Sends a large file in parts to a place of its own, from where the server puts it together (Nextcloud's
/// chunked upload, version 2). Parts that an earlier attempt has sent of the same content are not sent again.
class Chunks
{
public:
    /// `mark` stands for the content and the version that it replaces: the same for each attempt.
    Chunks(Session& session, const QUrl& destination, const QByteArray& mark);

    DriveResult send(const std::string& source, qint64 size, const std::string& action,
                     const DriveWatch& watch);
    /// What is moved to the destination in the end.
    QUrl whole() const { return m_place.of("/.file"); }
    /// When it won't be gone on with.
    void remove();

    static bool isWorthwhile(qint64 size);

private:
    DriveResult begin(const std::string& action);
    DriveResult sendMissing(const std::string& source, qint64 size, const std::string& action,
                            const DriveWatch& watch);

    Session& m_session;
    const Header m_destination; ///< Of each request.
    const Address m_place;
    bool m_isGone = false;                       ///< The server has forgotten the place meanwhile.
    std::map<std::string, std::uint64_t> m_sent; ///< Sizes of the parts, by their paths.
};

} // namespace Vs::Cloud
