#include "Services/Itemhub/Blobs/ObjectBlobs.h"

#include "Services/Itemhub/Blobs/Digest.h"

#include <QDateTime>
#include <QString>
#include <QUrl>
#include <QXmlStreamReader>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <curl/curl.h>
#include <fcntl.h>
#include <filesystem>
#include <memory>
#include <optional>
#include <sys/stat.h>
#include <system_error>
#include <vector>

namespace Itemhub::Blobs {

namespace {

namespace fs = std::filesystem;

constexpr size_t kHashLength = 64;
constexpr long kOk = 200, kNoContent = 204, kNotFound = 404;

[[noreturn]] void fail(const ObjectPlace& place, const std::string& why)
{
    throw std::system_error(std::make_error_code(std::errc::host_unreachable),
                            "The store of objects " + place.address + ": " + why);
}

struct Free
{
    void operator()(CURL* handle) const { curl_easy_cleanup(handle); }
    void operator()(curl_slist* list) const { curl_slist_free_all(list); }
};

/// A thread's connection, kept for its next request.
CURL* connection()
{
    static const bool isReady = curl_global_init(CURL_GLOBAL_DEFAULT) == CURLE_OK;
    thread_local const std::unique_ptr<CURL, Free> handle(isReady ? curl_easy_init() : nullptr);
    if (!handle)
        throw std::system_error(ENOMEM, std::generic_category(), "There can be no connection");
    curl_easy_reset(handle.get());
    return handle.get();
}

size_t append(char* data, size_t size, size_t count, void* text)
{
    static_cast<std::string*>(text)->append(data, size * count);
    return size * count;
}

size_t write(char* data, size_t size, size_t count, void* descriptor)
{
    const int file = *static_cast<int*>(descriptor);
    for (size_t done = 0; done < size * count;) {
        const ssize_t put = ::write(file, data + done, size * count - done);
        if (put < 0 && errno == EINTR)
            continue;
        if (put <= 0)
            return 0;
        done += static_cast<size_t>(put);
    }
    return size * count;
}

size_t read(char* data, size_t size, size_t count, void* descriptor)
{
    const ssize_t got = ::read(*static_cast<int*>(descriptor), data, size * count);
    return got < 0 ? CURL_READFUNC_ABORT : static_cast<size_t>(got);
}

/// A signed request.
class Request
{
public:
    /// @param sha256 of the body, which is covered by the signature
    Request(const ObjectPlace& place, const std::string& path, const std::string& query = {},
            const std::string& sha256 = Digest::hexOf({}))
        : m_place(place), m_handle(connection())
    {
        constexpr long kConnectSeconds = 10, kSlowest = 1024, kPatienceSeconds = 60;
        const std::string url =
            place.address + '/' + place.bucket + '/' + path + (query.empty() ? "" : "?" + query);
        const std::string scope = "aws:amz:" + place.region + ":s3", user = place.keyId + ':' + place.secret;
        m_headers.reset(curl_slist_append(nullptr, ("x-amz-content-sha256: " + sha256).c_str()));
        set(CURLOPT_URL, url.c_str());
        set(CURLOPT_AWS_SIGV4, scope.c_str());
        set(CURLOPT_USERPWD, user.c_str());
        set(CURLOPT_NOSIGNAL, 1L);
        set(CURLOPT_CONNECTTIMEOUT, kConnectSeconds);
        set(CURLOPT_LOW_SPEED_LIMIT, kSlowest);
        set(CURLOPT_LOW_SPEED_TIME, kPatienceSeconds);
        set(CURLOPT_PROTOCOLS_STR, "http,https");
        set(CURLOPT_WRITEFUNCTION, append);
        set(CURLOPT_WRITEDATA, &m_text);
    }

    template <class Value>
    void set(CURLoption option, Value value)
    {
        curl_easy_setopt(m_handle, option, value);
    }
    void header(const char* line)
    {
        if (curl_slist* longer = curl_slist_append(m_headers.get(), line))
            m_headers.release(), m_headers.reset(longer);
    }

    /// @returns the status. @throws std::system_error if the store cannot be reached
    long ask()
    {
        set(CURLOPT_HTTPHEADER, m_headers.get());
        if (const CURLcode result = curl_easy_perform(m_handle); result != CURLE_OK)
            fail(m_place, curl_easy_strerror(result));
        long status = 0;
        curl_easy_getinfo(m_handle, CURLINFO_RESPONSE_CODE, &status);
        return status;
    }
    [[nodiscard]] int64_t length() const
    {
        curl_off_t length = -1;
        curl_easy_getinfo(m_handle, CURLINFO_CONTENT_LENGTH_DOWNLOAD_T, &length);
        return length;
    }
    [[nodiscard]] const std::string& text() const { return m_text; }
    [[noreturn]] void refused(long status) const
    {
        constexpr size_t kShown = 300;
        fail(m_place, "it answered " + std::to_string(status) + ' ' + m_text.substr(0, kShown));
    }

private:
    const ObjectPlace& m_place;
    CURL* m_handle;
    std::unique_ptr<curl_slist, Free> m_headers;
    std::string m_text;
};

/// A temporary file, deleted on destruction.
struct Fetched
{
    explicit Fetched(const std::string& folder) : path(folder + "/fetched-XXXXXX")
    {
        file = Descriptor(::mkostemp(path.data(), O_CLOEXEC));
        if (!file.isValid())
            throw std::system_error(errno, std::generic_category(), "Cannot write into " + folder);
    }
    ~Fetched() { ::unlink(path.c_str()); }
    Fetched(const Fetched&) = delete;
    Fetched& operator=(const Fetched&) = delete;

    std::string path;
    Descriptor file;
};

struct Listed
{
    std::vector<std::pair<std::string, int64_t>> contents; ///< With their ages in seconds.
    std::string next;                                      ///< Empty on the last page.
};

Listed listedIn(const ObjectPlace& place, const std::string& text)
{
    Listed listed;
    QXmlStreamReader xml(QByteArray::fromStdString(text));
    const QDateTime now = QDateTime::currentDateTimeUtc();
    std::string name;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        if (xml.name() == QLatin1String("Key"))
            name = xml.readElementText().toStdString();
        else if (xml.name() == QLatin1String("LastModified") && name.size() == kHashLength)
            listed.contents.emplace_back(
                name, QDateTime::fromString(xml.readElementText(), Qt::ISODateWithMs).secsTo(now));
        else if (xml.name() == QLatin1String("NextContinuationToken"))
            listed.next = xml.readElementText().toStdString();
    }
    if (xml.hasError())
        fail(place, "its list cannot be read: " + xml.errorString().toStdString());
    return listed;
}

} // namespace

ObjectBlobs::ObjectBlobs(ObjectPlace place, const std::string& folder)
    : m_place(std::move(place)), m_near(folder), m_folder(folder)
{
}

void ObjectBlobs::put(const std::string& sha256, const std::string& file)
{
    Descriptor content(::open(file.c_str(), O_RDONLY | O_CLOEXEC));
    struct stat entry
    {
    };
    if (!content.isValid() || ::fstat(content.get(), &entry) != 0)
        throw std::system_error(errno, std::generic_category(), "Cannot read " + file);
    int descriptor = content.get();
    // The store checks the content against the hash, and an object appears atomically.
    Request request(m_place, sha256, {}, sha256);
    request.header("Content-Type: application/octet-stream");
    request.set(CURLOPT_UPLOAD, 1L);
    request.set(CURLOPT_READFUNCTION, read);
    request.set(CURLOPT_READDATA, &descriptor);
    request.set(CURLOPT_INFILESIZE_LARGE, static_cast<curl_off_t>(entry.st_size));
    if (const long status = request.ask(); status != kOk)
        request.refused(status);
    m_near.put(sha256, file);
    makeRoom();
}

Descriptor ObjectBlobs::open(const std::string& sha256) const
{
    if (Descriptor near = m_near.open(sha256); near.isValid())
        return near;
    Fetched fetched(m_folder);
    int descriptor = fetched.file.get();
    Request request(m_place, sha256);
    request.set(CURLOPT_WRITEFUNCTION, write);
    request.set(CURLOPT_WRITEDATA, &descriptor);
    const long status = request.ask();
    if (status == kNotFound)
        return Descriptor();
    if (status != kOk)
        request.refused(status);
    Digest digest;
    if (!addFile(digest, descriptor, 0, static_cast<uint64_t>(::lseek(descriptor, 0, SEEK_END))) ||
        digest.hexResult() != sha256) {
        // Truncated if damaged, so that nobody is given wrong bytes.
        if (::ftruncate(descriptor, 0) != 0)
            throw std::system_error(errno, std::generic_category(), "Cannot write into " + m_folder);
        return std::move(fetched.file);
    }
    m_near.put(sha256, fetched.path);
    Descriptor opened = m_near.open(sha256);
    makeRoom();
    return opened;
}

int64_t ObjectBlobs::size(const std::string& sha256) const
{
    Request request(m_place, sha256);
    request.set(CURLOPT_NOBODY, 1L);
    const long status = request.ask();
    if (status == kNotFound)
        return -1;
    if (status != kOk)
        request.refused(status);
    return request.length();
}

void ObjectBlobs::remove(const std::string& sha256)
{
    Request request(m_place, sha256);
    request.set(CURLOPT_CUSTOMREQUEST, "DELETE");
    if (const long status = request.ask(); status != kNoContent && status != kOk && status != kNotFound)
        request.refused(status);
    m_near.remove(sha256);
}

void ObjectBlobs::each(const std::function<void(const std::string&, int64_t)>& tell) const
{
    std::string next;
    do {
        // Sorted by name, as the signature requires.
        const QByteArray token = QUrl::toPercentEncoding(QString::fromStdString(next));
        Request request(m_place, {},
                        (next.empty() ? "" : "continuation-token=" + token.toStdString() + '&') +
                            "list-type=2");
        if (const long status = request.ask(); status != kOk)
            request.refused(status);
        const Listed listed = listedIn(m_place, request.text());
        for (const auto& [name, age] : listed.contents)
            tell(name, age);
        next = listed.next;
    } while (!next.empty());
}

/// Oldest first. Another process may be doing the same at the same time.
void ObjectBlobs::makeRoom() const
{
    struct Near
    {
        int64_t age;
        std::string name;
        uint64_t size;
    };
    std::vector<Near> all;
    uint64_t bytes = 0;
    m_near.each([&](const std::string& name, int64_t age) {
        const auto size = static_cast<uint64_t>(std::max<int64_t>(m_near.size(name), 0));
        all.push_back({age, name, size});
        bytes += size;
    });
    std::ranges::sort(all, std::greater{}, &Near::age);
    for (const Near& each : all) {
        if (bytes <= m_place.nearBytes)
            return;
        m_near.remove(each.name);
        bytes -= each.size;
    }
}

} // namespace Itemhub::Blobs
