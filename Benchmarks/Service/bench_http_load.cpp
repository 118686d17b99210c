// Asks a server on this machine for the same again and again, on several connections at once, and prints how
// many answers came in a second and the median time of one, as JSON.
//
//     bench_http_load PORT SECONDS CONNECTIONS METHOD TOKEN PATH...    the paths in turn; a POST sends
//     {"caption":"Load"}

#include <algorithm>
#include <arpa/inet.h>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <netinet/tcp.h>
#include <stdexcept>
#include <string>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

int connectTo(int port)
{
    const int connection = ::socket(AF_INET, SOCK_STREAM, 0);
    const int yes = 1;
    setsockopt(connection, IPPROTO_TCP, TCP_NODELAY, &yes, sizeof yes);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<uint16_t>(port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (::connect(connection, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0)
        throw std::runtime_error("cannot connect");
    return connection;
}

/// Sends a request and takes the whole answer. @returns its status
int ask(int connection, const std::string& request, std::string& answer)
{
    if (::send(connection, request.data(), request.size(), MSG_NOSIGNAL) !=
        static_cast<ssize_t>(request.size()))
        throw std::runtime_error("cannot send");
    answer.clear();
    for (size_t wanted = std::string::npos; answer.size() < wanted;) {
        char piece[16384];
        const ssize_t got = ::recv(connection, piece, sizeof piece, 0);
        if (got <= 0)
            throw std::runtime_error("the connection ended");
        answer.append(piece, static_cast<size_t>(got));
        const size_t head = answer.find("\r\n\r\n"), length = answer.find("Content-Length: ");
        if (head != std::string::npos && length < head)
            wanted = head + 4 + std::strtoul(answer.c_str() + length + 16, nullptr, 10);
    }
    return std::atoi(answer.c_str() + std::strlen("HTTP/1.1 "));
}

} // namespace

int main(int argc, char** argv)
{
    if (argc < 7)
        return 2;
    const int port = std::atoi(argv[1]), connections = std::atoi(argv[3]);
    const auto time = std::chrono::duration<double>(std::atof(argv[2]));
    const std::string method = argv[4], token = argv[5];
    const std::string body = method == "POST" ? "{\"caption\":\"Load\"}" : "";
    std::vector<std::string> requests;
    for (int i = 6; i < argc; ++i)
        requests.push_back(method + ' ' + argv[i] + " HTTP/1.1\r\nHost: 127.0.0.1\r\nAuthorization: Bearer " +
                           token + "\r\nContent-Type: application/json\r\nContent-Length: " +
                           std::to_string(body.size()) + "\r\n\r\n" + body);

    std::vector<std::vector<double>> times(static_cast<size_t>(connections));
    std::vector<std::thread> threads;
    const auto begin = Clock::now();
    for (auto& mine : times)
        threads.emplace_back([&] {
            const int connection = connectTo(port);
            std::string answer;
            for (size_t next = 0; Clock::now() - begin < time; ++next) {
                const auto sent = Clock::now();
                if (const int status = ask(connection, requests[next % requests.size()], answer);
                    status >= 300) {
                    std::fprintf(stderr, "status %d: %s\n", status, answer.c_str());
                    std::exit(1);
                }
                mine.push_back(std::chrono::duration<double, std::milli>(Clock::now() - sent).count());
            }
            ::close(connection);
        });
    for (auto& thread : threads)
        thread.join();
    const double seconds = std::chrono::duration<double>(Clock::now() - begin).count();
    std::vector<double> all;
    for (const auto& mine : times)
        all.insert(all.end(), mine.begin(), mine.end());
    std::sort(all.begin(), all.end());
    std::printf("{\"per_second\": %.1f, \"median_ms\": %.3f, \"p99_ms\": %.3f}\n",
                static_cast<double>(all.size()) / seconds, all[all.size() / 2], all[all.size() * 99 / 100]);
}
