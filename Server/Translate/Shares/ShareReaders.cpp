#include "Server/Translate/Shares/ShareReaders.h"

#include "Server/Translate/Shares/Divider.h"
#include "Server/Translate/Wall.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <poll.h>
#include <stdexcept>
#include <string_view>
#include <sys/mman.h>
#include <thread>
#include <unistd.h>
#include <utility>

namespace Vs::Translate::Shares {

namespace {

/// For smaller files the gain is less than the cost of the processes.
constexpr uint64_t kLeastFile = 4 << 20;
constexpr int kBetweenReports = 40; // ms

struct Wish
{
    bool isNever = false, isAlways = false;
};

Wish wishOfEnvironment()
{
    const char* value = std::getenv("QUILLET_SHARES");
    const std::string_view text = value ? value : "";
    return {text == "never", text == "always"};
}

size_t processors()
{
    return std::max(1u, std::thread::hardware_concurrency());
}

} // namespace

bool ShareReaders::concern(const std::string& path)
{
    const Wish wish = wishOfEnvironment();
    std::error_code error;
    const uint64_t size = std::filesystem::file_size(path, error);
    return !error && !wish.isNever && (wish.isAlways || (size >= kLeastFile && processors() > 1));
}

std::shared_ptr<ShareReaders> ShareReaders::start(const std::string& path, const Help& help)
{
    if (!concern(path))
        return nullptr;
    std::shared_ptr<ShareReaders> readers(new ShareReaders);
    readers->m_board = std::make_unique<ShareBoard>();
    for (size_t i = 0; i <= kMostShares; ++i) {
        readers->m_files.push_back(memfd_create("share", MFD_CLOEXEC));
        if (readers->m_files.back() < 0)
            return nullptr;
    }
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0)
        return nullptr;
    readers->m_pipe = ends[0];
    const pid_t worker = getpid();
    const pid_t divider = fork();
    if (divider == 0) {
        close(ends[0]);
        close(Exchange::kWorkerPipe);
        endWithProcess(worker);
        divide({.path = path,
                .pieces = help.pieces,
                .memory = help.memory,
                .readers = std::max<size_t>(2, processors()),
                .isAlways = wishOfEnvironment().isAlways,
                .pipe = ends[1],
                .files = readers->m_files,
                .board = readers->m_board.get()});
    }
    close(ends[1]);
    return divider < 0 ? nullptr : readers;
}

ShareReaders::~ShareReaders()
{
    if (m_pipe >= 0)
        close(m_pipe);
    for (const int file : m_files)
        if (file >= 0)
            close(file);
}

/// Nothing when the divider has ended.
std::optional<Exchange::WorkerMessage> ShareReaders::receive(const std::function<void(double)>& progress)
{
    for (;;) {
        if (auto message = m_reader.next())
            return message;
        if (m_reader.broken())
            return std::nullopt;
        pollfd end{m_pipe, POLLIN, 0};
        const int ready = poll(&end, 1, kBetweenReports);
        progress(m_board->progress());
        if (ready <= 0)
            continue;
        char buffer[4096];
        const ssize_t got = read(m_pipe, buffer, sizeof buffer);
        if (got > 0)
            m_reader.add({buffer, static_cast<size_t>(got)});
        else if (got == 0 || errno != EINTR)
            return std::nullopt;
    }
}

bool ShareReaders::waitForPlan()
{
    const auto message = receive([](double) {});
    if (!message || message->kind != Exchange::WorkerMessage::Kind::Progress)
        return false;
    m_open = static_cast<size_t>(std::lround(message->fraction));
    m_structure = FileMapping::adopt(std::exchange(m_files.front(), -1));
    return true;
}

bool ShareReaders::next(std::vector<ShareResult>& results, const std::function<void(double)>& progress)
{
    while (m_open > 0) {
        const auto message = receive(progress);
        if (!message || message->kind == Exchange::WorkerMessage::Kind::Error)
            return false;
        const auto share = static_cast<size_t>(std::lround(message->fraction));
        if (share + 1 >= m_files.size() || m_files[share + 1] < 0)
            return false;
        --m_open;
        m_isComplete = m_open == 0;
        const auto file = FileMapping::adopt(std::exchange(m_files[share + 1], -1));
        std::string_view bytes = file->bytes();
        results.clear();
        for (ShareResult result; ShareResult::take(bytes, result);)
            results.push_back(std::move(result));
        return true;
    }
    return false;
}

} // namespace Vs::Translate::Shares
