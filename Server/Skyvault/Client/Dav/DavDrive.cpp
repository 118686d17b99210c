#include "Server/Skyvault/Client/Dav/DavDrive.h"

#include "Server/Network/OAuth.h"
#include "Server/Skyvault/Client/Dav/Account.h"
#include "Server/Skyvault/Client/Dav/Comments.h"
#include "Server/Skyvault/Client/Dav/Download.h"
#include "Server/Skyvault/Client/Dav/Probe.h"
#include "Server/Skyvault/Client/Dav/Upload.h"

namespace Vs::Cloud {

namespace {

// Per session, for what remains unknown: a server may never answer some request.
constexpr int kMostProbes = 3;

} // namespace

DavDrive::DavDrive(const QUrl& address, DriveCredentials credentials)
    : m_session(address, std::move(credentials)), m_webAddress(address.toString().toStdString())
{
    m_session.http.renewal(renewToken);
}

DriveResult DavDrive::checkPath(const char* doing, const std::string& path) const
{
    if (isDrivePath(path))
        return {};
    return failed(CloudErrorState::BadName, m_session.action(doing, path), "nothing can have that name");
}

DriveResult DavDrive::connect(const std::optional<DriveTraits>& known, const DriveWatch& watch)
{
    DriveResult result = recognize(m_session);
    if (!result.isOk())
        return result;
    if (!m_session.service.web.isEmpty())
        m_webAddress = m_session.service.web.toString().toStdString();
    m_session.removeLeftovers();
    m_session.traits = known && isFresh(*known) ? *known : DriveTraits();
    if (!m_session.traits.isKnown())
        result = probe(m_session, "/", watch);
    m_probesLeft = kMostProbes;
    addCapabilities(m_session, m_session.traits);
    return result;
}

DriveResult DavDrive::list(const std::string& folder, std::vector<DriveEntry>& entries,
                           const DriveWatch& watch)
{
    const DriveResult checked = checkPath("Listing", folder);
    return checked.isOk() ? m_listings.list(m_session, folder, entries, watch) : checked;
}

DriveResult DavDrive::find(const std::string& path, DriveEntry& entry)
{
    const DriveResult checked = checkPath("Looking at", path);
    return checked.isOk() ? m_session.find(path, entry) : checked;
}

DriveResult DavDrive::makeFolders(const std::string& path)
{
    m_listings.forget();
    return m_session.makeFolders(path);
}

DriveResult DavDrive::upload(const DriveUpload& upload, DriveEntry& entry, const DriveWatch& watch)
{
    // The user may be allowed to write there though not in the root.
    if (!m_session.traits.isKnown() && m_probesLeft-- > 0) {
        DriveResult result = checkPath("Writing", upload.path);
        if (result.isOk())
            result = probe(m_session, parentOf(upload.path), watch);
        if (!result.isOk())
            return result;
    }
    m_listings.forget();
    return Upload(m_session, upload, watch).run(entry);
}

DriveResult DavDrive::download(const std::string& path, const std::string& target, DriveEntry& entry,
                               const DriveWatch& watch)
{
    const DriveResult checked = checkPath("Reading", path);
    return checked.isOk() ? Vs::Cloud::download(m_session, path, target, entry, watch) : checked;
}

DriveResult DavDrive::comment(const std::string& path, const std::string& text, std::string& id)
{
    const DriveResult checked = checkPath("Commenting on", path);
    return checked.isOk() ? Vs::Cloud::comment(m_session, path, text, id) : checked;
}

} // namespace Vs::Cloud
