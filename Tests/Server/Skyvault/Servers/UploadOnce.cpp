// One save in a process of its own, for tests that kill it:
//     upload_once KIND ADDRESS PATH SOURCE [KNOWN-ETAG], with the password in QUILLET_PASSWORD; of the KIND
//     -1, what
// the server does is found out first

#include "Server/Skyvault/Client/Transport.h"
#include "Tests/Server/Skyvault/Servers/DriveOnServer.h"

#include <QCoreApplication>

#include <cstdlib>

int main(int count, char** arguments)
{
    if (count < 5)
        return 2;
    QCoreApplication application(count, arguments);
    using namespace Vs::Cloud;
    const int kind = std::atoi(arguments[1]);
    std::optional<DriveTraits> known;
    if (kind >= 0)
        known = knownTraits(TestSupport::TestServer::Kind(kind));
    const auto drive = quilletDriveTransport()->drive(
        arguments[2],
        {.kind = DriveCredentials::Kind::Password, .user = "ada", .secret = std::getenv("QUILLET_PASSWORD")});
    DriveUpload upload{.path = arguments[3], .source = arguments[4]};
    if (count > 5)
        upload.known = arguments[5];
    DriveEntry entry;
    return drive->connect(known, {}).isOk() && drive->upload(upload, entry, {}).isOk() ? 0 : 1;
}
