// Stores credentials in the keyring of the session that it runs in, reads them, and removes them again;
// prints the state of each step, and what was read. An argument is the time in seconds that a keyring has to
// answer.

#include "Server/Network/Keyring.h"
#include "Server/Skyvault/Client/Transport.h"

#include <QCoreApplication>

#include <cstdlib>
#include <iostream>

using namespace Vs::Cloud;

int main(int count, char** arguments)
{
    const QCoreApplication application(count, arguments);
    if (count > 1)
        Vs::Network::keyringPatience(std::chrono::seconds(std::atoi(arguments[1])));
    DriveTransport* transport = quilletDriveTransport();
    const std::string key = "https://drive.example.org/dav";
    const auto print = [](const char* step, const DriveResult& result) {
        std::cout << step << ' ' << int(result.state) << ' ' << result.detail << '\n';
    };
    DriveCredentials read;
    print("before", transport->kept(key, read));
    print("keep", transport->keep(key, {.kind = DriveCredentials::Kind::Bearer,
                                        .user = "änna",
                                        .secret = "tok en\"",
                                        .refreshToken = "again",
                                        .tokenAddress = "https://login.example.org/token",
                                        .client = "quillet"}));
    print("other", transport->kept(key + "/other", read));
    print("kept", transport->kept(key, read));
    if (read.kind == DriveCredentials::Kind::Bearer)
        std::cout << read.user << '|' << read.secret << '|' << read.refreshToken << '|' << read.tokenAddress
                  << '|' << read.client << '\n';
    print("forget", transport->forget(key));
    print("after", transport->kept(key, read));
    print("forget again", transport->forget(key));
}
