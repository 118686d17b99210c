// One save in a separate process, for tests that kill it:
//     upload_once KIND ADDRESS NOTES PATH SOURCE [KNOWN-ETAG], with the password in QUILLET_PASSWORD
// With the KIND -1, the server's traits are found out first; with -2, it is treated as one that neither locks
// nor refuses. NOTES is the folder for what a killed process left behind.

#include "Server/Skyvault/Client/Transport.h"
#include "Tests/Server/Skyvault/Servers/DriveOnServer.h"

#include <QCoreApplication>

#include <algorithm>
#include <cstdlib>

int main(int count, char** arguments)
{
    if (count < 6)
        return 2;
    QCoreApplication application(count, arguments);
    using namespace Vs::Cloud;
    const int kind = std::atoi(arguments[1]);
    std::optional<DriveTraits> known;
    if (kind != -1)
        known = knownTraits(TestSupport::TestServer::Kind(std::max(kind, 0)));
    if (kind == -2)
        known->locks = known->refusesStale = known->refusesExisting = false;
    const auto drive = quilletDriveTransport()->drive(
        arguments[2],
        {.kind = DriveCredentials::Kind::Password, .user = "ada", .secret = std::getenv("QUILLET_PASSWORD")});
    drive->notesIn(arguments[3]);
    DriveUpload upload{.path = arguments[4], .source = arguments[5]};
    if (count > 6)
        upload.known = arguments[6];
    DriveEntry entry;
    return drive->connect(known, {}).isOk() && drive->upload(upload, entry, {}).isOk() ? 0 : 1;
}
