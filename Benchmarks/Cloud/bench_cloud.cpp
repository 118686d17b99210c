// One operation on a drive, timed:
//     bench_cloud ADDRESS USER upload|download|list PATH [FILE], with the password in QUILLET_PASSWORD
// prints the seconds, without those of the start and of signing in, and the most memory that it held, in MB.

#include "Server/Skyvault/Client/Transport.h"

#include <QCoreApplication>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <sys/resource.h>
#include <vector>

using namespace Vs::Cloud;

namespace {

DriveResult run(Drive& drive, const std::string& operation, const std::string& path, const std::string& file)
{
    DriveEntry entry;
    if (operation == "download")
        return drive.download(path, file, entry, {});
    if (operation == "list") {
        std::vector<DriveEntry> entries;
        return drive.list(path, entries, {});
    }
    return drive.upload({.path = path, .source = file, .keepOther = false}, entry, {});
}

} // namespace

int main(int count, char** arguments)
{
    const char* const password = std::getenv("QUILLET_PASSWORD");
    if (count < 5 || !password) {
        std::fputs("bench_cloud ADDRESS USER upload|download|list PATH [FILE]\n", stderr);
        return 2;
    }
    QCoreApplication application(count, arguments);
    const auto drive = quilletDriveTransport()->drive(
        arguments[1], {.kind = DriveCredentials::Kind::Password, .user = arguments[2], .secret = password});
    DriveTraits traits{.locks = true,
                       .refusesExisting = true,
                       .refusesStale = true,
                       .keepsOldOnBreak = true,
                       .etagsDifferInOneTick = true,
                       .probed = std::chrono::system_clock::now()};
    DriveResult result = drive->connect(traits, {});
    const auto begin = std::chrono::steady_clock::now();
    if (result.isOk())
        result = run(*drive, arguments[3], arguments[4], count > 5 ? arguments[5] : "");
    const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - begin;
    if (!result.isOk()) {
        std::fprintf(stderr, "%s\n", result.detail.c_str());
        return 1;
    }
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    std::printf("%.4f %ld\n", seconds.count(), usage.ru_maxrss / 1024);
    return 0;
}
