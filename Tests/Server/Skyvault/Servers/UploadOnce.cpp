// One save in a process of its own, for tests that kill it:
//     upload_once KIND ADDRESS PATH SOURCE [KNOWN-ETAG], with the password in QUILLET_PASSWORD

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
    const auto kind = TestSupport::TestServer::Kind(std::atoi(arguments[1]));
    const auto drive = quilletDriveTransport()->drive(
        arguments[2],
        {.kind = DriveCredentials::Kind::Password, .user = "ada", .secret = std::getenv("QUILLET_PASSWORD")});
    DriveUpload upload{.path = arguments[3], .source = arguments[4]};
    if (count > 5)
        upload.known = arguments[5];
    DriveEntry entry;
    return drive->connect(knownTraits(kind), {}).isOk() && drive->upload(upload, entry, {}).isOk() ? 0 : 1;
}
