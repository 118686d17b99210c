// What a client of a drive does, timed:
//     bench_cloud ADDRESS USER OPERATION PATH [FILE [COUNT]], with the password in QUILLET_PASSWORD
// put and get are one bare request; upload (of a new file), save (over one that is there), download and list
// do all that belongs to it. COUNT of them go over one connection, to PATH0, PATH1 and so on. It prints the
// seconds and those of the processor, without the start and signing in, and the most memory that it held, in
// MB.

#include "Server/Network/Failure.h"
#include "Server/Network/Http.h"
#include "Server/Skyvault/Client/Dav/Address.h"
#include "Server/Skyvault/Client/Transport.h"

#include <QCoreApplication>
#include <QFileInfo>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

using Vs::CloudErrorState;
using namespace Vs::Cloud;

namespace {

struct Bench
{
    const Address address;
    const DriveCredentials credentials;
    const std::string file;
    Http http{credentials};
    std::unique_ptr<Drive> drive;
    std::vector<std::string> known; ///< ETags of what is saved over.

    DriveResult put(const std::string& path)
    {
        const FilePart whole{file, 0, QFileInfo(QString::fromStdString(file)).size()};
        return resultOf(http.ask({.method = "PUT", .url = address.of(path), .file = whole}), "put");
    }

    DriveResult get(const std::string& path)
    {
        QFile target(QString::fromStdString(file));
        if (!target.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Unbuffered))
            return {CloudErrorState::CacheFailed, file};
        Request request{.method = "GET", .url = address.of(path)};
        request.sink = [&](const QByteArray& piece) -> DriveResult {
            const bool isWritten = target.write(piece) == piece.size();
            return {isWritten ? CloudErrorState::Success : CloudErrorState::CacheFailed, file};
        };
        return resultOf(http.ask(request), "get");
    }

    DriveResult upload(const std::string& path, std::optional<std::string> over = {})
    {
        DriveEntry entry;
        DriveResult result =
            drive->upload({.path = path, .source = file, .known = std::move(over)}, entry, {});
        known.push_back(entry.etag);
        return result;
    }

    DriveResult run(const std::string& operation, const std::string& path, size_t number)
    {
        DriveEntry entry;
        std::vector<DriveEntry> entries;
        if (operation == "put")
            return put(path);
        if (operation == "get")
            return get(path);
        if (operation == "upload")
            return upload(path);
        if (operation == "save")
            return upload(path, known.at(number));
        if (operation == "download")
            return drive->download(path, file, entry, {});
        return drive->list(path, entries, {});
    }
};

/// The most that was held since the program was started; getrusage tells that of whoever started it, if he
/// held more.
long mostMegabytes()
{
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with("VmHWM:"))
            return std::atol(line.c_str() + 6) / 1024;
    }
    return 0;
}

double secondsOf(clockid_t clock)
{
    timespec time{};
    clock_gettime(clock, &time);
    return double(time.tv_sec) + double(time.tv_nsec) / 1e9;
}

} // namespace

int main(int count, char** arguments)
{
    const char* const password = std::getenv("QUILLET_PASSWORD");
    if (count < 5 || !password) {
        std::fputs("bench_cloud ADDRESS USER put|get|upload|save|download|list PATH [FILE [COUNT]]\n",
                   stderr);
        return 2;
    }
    QCoreApplication application(count, arguments);
    const DriveCredentials credentials{
        .kind = DriveCredentials::Kind::Password, .user = arguments[2], .secret = password};
    Bench bench{Address(QUrl(arguments[1])), credentials, count > 5 ? arguments[5] : ""};
    bench.drive = quilletDriveTransport()->drive(arguments[1], credentials);
    DriveTraits traits{.locks = true,
                       .refusesExisting = true,
                       .refusesStale = true,
                       .weakEtags = false,
                       .keepsOldOnBreak = true,
                       .movesOntoExisting = false,
                       .etagAfterPut = false,
                       .etagFromPropfind = false,
                       .etagsDifferInOneTick = true,
                       .properties = false,
                       .probed = std::chrono::system_clock::now()};
    const std::string operation = arguments[3], path = arguments[4];
    const int times = count > 6 ? std::atoi(arguments[6]) : 0;
    const auto pathOf = [&](int i) { return times ? path + std::to_string(i) : path; };
    DriveResult result = bench.drive->connect(traits, {});
    static_cast<void>(bench.http.ask({.method = "OPTIONS", .url = bench.address.root()}));
    for (int i = 0; result.isOk() && operation == "save" && i < std::max(times, 1); ++i)
        result = bench.upload(pathOf(i));
    // Some servers give a file no ETag to rely on before its second is over.
    if (operation == "save")
        std::this_thread::sleep_for(std::chrono::seconds(2));
    const double begin = secondsOf(CLOCK_MONOTONIC), processor = secondsOf(CLOCK_PROCESS_CPUTIME_ID);
    for (int i = 0; result.isOk() && i < std::max(times, 1); ++i)
        result = bench.run(operation, pathOf(i), size_t(i));
    const double seconds = secondsOf(CLOCK_MONOTONIC) - begin,
                 used = secondsOf(CLOCK_PROCESS_CPUTIME_ID) - processor;
    if (!result.isOk()) {
        std::fprintf(stderr, "%s\n", result.detail.c_str());
        return 1;
    }
    std::printf("%.5f %.5f %ld\n", seconds, used, mostMegabytes());
    return 0;
}
