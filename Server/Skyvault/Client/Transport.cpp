#include "Server/Skyvault/Client/Transport.h"

#include "Server/Skyvault/Client/Dav/DavDrive.h"
#include "Server/Skyvault/Client/SignIn/Discovery.h"
#include "Server/Skyvault/Client/SignIn/Keyring.h"

namespace Vs::Cloud {

DriveResult Transport::discover(const std::string& typed, DriveOffer& offer)
{
    return Vs::Cloud::discover(typed, offer);
}

DriveResult Transport::signInByBrowser(const DriveOffer& offer,
                                       const std::function<bool(const std::string&)>& open,
                                       DriveCredentials& credentials, const DriveWatch& watch)
{
    return Vs::Cloud::signInByBrowser(offer, open, credentials, watch);
}

std::unique_ptr<Drive> Transport::drive(const std::string& address, const DriveCredentials& credentials)
{
    return std::make_unique<DavDrive>(QUrl(QString::fromStdString(address)), credentials);
}

DriveResult Transport::keep(const std::string& key, const DriveCredentials& credentials)
{
    return keepInKeyring(key, credentials);
}

DriveResult Transport::kept(const std::string& key, DriveCredentials& credentials)
{
    return keptInKeyring(key, credentials);
}

DriveResult Transport::forget(const std::string& key)
{
    return forgetInKeyring(key);
}

} // namespace Vs::Cloud

Vs::Cloud::DriveTransport* quilletDriveTransport()
{
    static Vs::Cloud::Transport transport;
    return &transport;
}
