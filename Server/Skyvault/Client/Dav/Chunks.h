#pragma once

#include "Server/Skyvault/Client/Dav/Session.h"

#include <string>

namespace Vs::Cloud {

/// Uploads a large file in parts to a temporary place, from which the server assembles it (Nextcloud's
/// chunked upload, version 2). Parts of the same content that an earlier attempt sent are not sent again.
class Chunks
{
public:
    /// `mark` identifies the content and the version that it replaces: the same for each attempt.
    Chunks(Session& session, const QUrl& destination, const QByteArray& mark);

    DriveResult send(const std::string& source, qint64 size, const std::string& action,
                     const DriveWatch& watch);
    /// What is moved to the destination at the end.
    QUrl whole() const { return m_place.of("/.file"); }
    /// For an upload that won't be resumed.
    void remove();

    static bool isWorthwhile(qint64 size);

private:
    DriveResult begin(const std::string& action);
    DriveResult sendMissing(const std::string& source, qint64 size, const std::string& action,
                            const DriveWatch& watch);

    Session& m_session;
    const Header m_destination; ///< Sent with each request.
    const Address m_place;
    bool m_isGone = false;                       ///< The server has lost the place meanwhile.
    std::map<std::string, std::uint64_t> m_sent; ///< Sizes of the parts by path.
};

} // namespace Vs::Cloud
