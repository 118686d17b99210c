#pragma once

#include "Server/Skyvault/Drive.h"

namespace Vs::Cloud {

/// Signs in to drives and opens them.
class Transport : public DriveTransport
{
public:
    DriveResult discover(const std::string& typed, DriveOffer& offer) override;
    DriveResult signInByBrowser(const DriveOffer& offer, const std::function<bool(const std::string&)>& open,
                                DriveCredentials& credentials, const DriveWatch& watch) override;
    std::unique_ptr<Drive> drive(const std::string& address, const DriveCredentials& credentials) override;
    DriveResult keep(const std::string& key, const DriveCredentials& credentials) override;
    DriveResult kept(const std::string& key, DriveCredentials& credentials) override;
    DriveResult forget(const std::string& key) override;
};

} // namespace Vs::Cloud

extern "C" Vs::Cloud::DriveTransport* quilletDriveTransport();
