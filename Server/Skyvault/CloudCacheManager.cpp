#include "Server/Skyvault/CloudCacheManager.h"

#include "Server/Base/Exception.h"
#include "Server/Base/Require.h"
#include "Server/Base/Task.h"
#include "Server/Skyvault/CloudEvents.h"
#include "Server/Skyvault/Private/Download.h"
#include "Server/Skyvault/Private/Failures.h"
#include "Server/Skyvault/Private/Session.h"
#include "Server/Skyvault/Private/Upload.h"
#include "Server/Skyvault/SkyvaultUtilities.h"

#include <boost/filesystem/operations.hpp>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace Vs {

namespace fs = boost::filesystem;
using Cloud::Cache;
using Cloud::CacheRow;

namespace {

/// Only one run of the program at a time uploads what is waiting in a cache.
class SendingLock
{
public:
    explicit SendingLock(const fs::path& root)
        : m_file(open((root.string() + ".lock").c_str(), O_CREAT | O_RDWR | O_CLOEXEC, S_IRUSR | S_IWUSR))
    {
        if (m_file >= 0 && flock(m_file, LOCK_EX | LOCK_NB) != 0) {
            close(m_file);
            m_file = -1;
        }
    }
    ~SendingLock()
    {
        if (m_file >= 0)
            close(m_file);
    }
    SendingLock(const SendingLock&) = delete;
    SendingLock& operator=(const SendingLock&) = delete;
    bool held() const { return m_file >= 0; }

private:
    int m_file;
};

void lookAtLast(std::vector<Cache::Place> places)
{
    if (places.empty())
        return;
    const Cache::Place place = std::move(places.back());
    places.pop_back();
    const auto entry = std::make_shared<Cloud::DriveEntry>();
    Cloud::Session::get().post(
        [place, entry](Cloud::Drive& drive, const Cloud::DriveWatch&) {
            return drive.find(place.path, *entry);
        },
        [place, entry, rest = std::move(places)](const Cloud::DriveResult& result) {
            if (result.isOk())
                Cloud::noteSeen(place, *entry);
            else if (result.state == CloudErrorState::NotFound)
                Cloud::noteRemoved(place);
            if (Cloud::Session::get().isOnline())
                lookAtLast(rest);
        });
}

} // namespace

struct CloudCacheManager::Data
{
    std::unique_ptr<SendingLock> lock; ///< While uploading.
    std::vector<Cache::Place> queue;

    void sendNext();
};

CloudCacheManager* CloudCacheManager::getInstance()
{
    static auto* const manager = new CloudCacheManager;
    return manager;
}

CloudCacheManager::CloudCacheManager() : m_data(std::make_unique<Data>()) {}

CloudCacheManager::~CloudCacheManager() = default;

Tasks& CloudCacheManager::results()
{
    static auto* const tasks = new Tasks;
    return *tasks;
}

bool CloudCacheManager::downloadRequired(const SkyvaultNodeData* node) const
try {
    const fs::path root = SkyvaultUtilities::currentCachePath(nullptr);
    return node && !root.empty() && Cloud::isDownloadRequired({root, node->id()}, node->etag());
} catch (const Exception& error) {
    // The download reports the reason.
    Cloud::Failures::note(CloudErrorState::CacheFailed, error.message());
    return true;
}

CloudFileState CloudCacheManager::state(const fs::path& file) const
{
    return Cache::get().state(file);
}

std::string CloudCacheManager::identifier(const fs::path& file) const
try {
    const auto place = Cache::placeOf(file);
    const std::optional<CacheRow> row = place ? Cache::get().row(*place) : std::nullopt;
    return row && row->onDrive ? row->path : std::string();
} catch (const Exception&) {
    return {};
}

std::vector<fs::path> CloudCacheManager::waiting() const
try {
    std::vector<fs::path> files;
    const fs::path root = SkyvaultUtilities::currentCachePath(nullptr);
    boost::system::error_code error;
    if (root.empty() || !fs::exists(root.string() + ".index", error))
        return files;
    for (const CacheRow& row : Cache::get().pending(root))
        files.push_back(Cache::Place{root, row.path}.file());
    return files;
} catch (const Exception& error) {
    Cloud::Failures::note(CloudErrorState::CacheFailed, error.message());
    return {};
}

void CloudCacheManager::uploadWaiting()
{
    assertMainThread();
    if (m_data->lock || !Cloud::Session::get().exists())
        return;
    const std::vector<fs::path> files = waiting();
    if (files.empty())
        return;
    auto lock = std::make_unique<SendingLock>(SkyvaultUtilities::currentCachePath(nullptr));
    if (!lock->held())
        return;
    m_data->lock = std::move(lock);
    for (const fs::path& file : files)
        if (const auto place = Cache::placeOf(file))
            m_data->queue.push_back(*place);
    m_data->sendNext();
}

// One after the other, so that the user's own requests come in between.
void CloudCacheManager::Data::sendNext()
{
    while (!queue.empty()) {
        const Cache::Place place = queue.front();
        queue.erase(queue.begin());
        try {
            const CacheRow row = Cache::get().rowOrNew(place);
            if (row.pending == CacheRow::Pending::No ||
                Cache::get().uploading().contains(place.file().string()))
                continue;
            Cloud::Upload::post(place, [this] {
                // The others can't be reached either.
                if (!Cloud::Session::get().isOnline())
                    queue.clear();
                sendNext();
            });
            return;
        } catch (const Exception& error) {
            Cloud::Failures::note(CloudErrorState::CacheFailed, error.message());
        }
    }
    lock.reset();
}

void CloudCacheManager::refresh(const std::vector<fs::path>& files)
{
    assertMainThread();
    if (!Cloud::Session::get().exists())
        return;
    const fs::path root = SkyvaultUtilities::currentCachePath(nullptr);
    std::vector<Cache::Place> places;
    for (const fs::path& file : files)
        if (const auto place = Cache::placeOf(file); place && place->root == root)
            places.push_back(*place);
    lookAtLast(std::move(places));
}

bool CloudCacheManager::isRemoved(const fs::path& file) const
try {
    const auto place = Cache::placeOf(file);
    boost::system::error_code error;
    if (!place || !fs::exists(place->root.string() + ".index", error))
        return false;
    const std::optional<CacheRow> row = Cache::get().row(*place);
    return row && row->isRemoved();
} catch (const Exception&) {
    return false;
}

} // namespace Vs
