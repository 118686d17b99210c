#pragma once

#include "Server/Skyvault/Client/Dav/Listings.h"
#include "Server/Skyvault/Client/Dav/Session.h"
#include "Server/Skyvault/Drive.h"

namespace Vs::Cloud {

/// A drive that speaks WebDAV.
class DavDrive : public Drive
{
public:
    DavDrive(const QUrl& address, DriveCredentials credentials);

    void patience(std::chrono::milliseconds time) override { m_session.http.patience(time); }
    void notesIn(const std::string& folder) override { m_session.leftovers.keepIn(folder); }
    DriveResult connect(const std::optional<DriveTraits>& known, const DriveWatch& watch) override;
    const DriveTraits& traits() const override { return m_session.traits; }
    const DriveCredentials& credentials() const override { return m_session.http.credentials(); }
    std::string userName() const override { return m_session.user; }
    std::string webAddress() const override { return m_webAddress; }
    DriveResult list(const std::string& folder, std::vector<DriveEntry>& entries,
                     const DriveWatch& watch) override;
    DriveResult find(const std::string& path, DriveEntry& entry) override;
    DriveResult makeFolders(const std::string& path) override;
    DriveResult upload(const DriveUpload& upload, DriveEntry& entry, const DriveWatch& watch) override;
    DriveResult download(const std::string& path, const std::string& target, DriveEntry& entry,
                         const DriveWatch& watch) override;
    DriveResult comment(const std::string& path, const std::string& text, std::string& id) override;

private:
    DriveResult checkPath(const char* doing, const std::string& path) const;

    Session m_session;
    Listings m_listings;
    std::string m_webAddress;
    int m_probesLeft = 0;
};

} // namespace Vs::Cloud
