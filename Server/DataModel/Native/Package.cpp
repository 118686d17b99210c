#include "Server/DataModel/Native/Package.h"

#include "Server/Base/SiblingLibrary.h"
#include "Server/Base/SystemCalls.h"
#include "Server/DataModel/Model/PlainFile.h"
#include "Server/DataModel/Native/ZipReader.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <stdexcept>
#include <sys/mman.h>
#include <unistd.h>

namespace Vs::Native {

namespace {

struct ZipLibrary
{
    decltype(&quilletReadZip) read;
    decltype(&quilletReadZipFile) readFile;
};

const ZipLibrary& zipLibrary()
{
    static const ZipLibrary library = [] {
        const SiblingLibrary found("libVsZip10.so");
        return ZipLibrary{found.function<decltype(ZipLibrary::read)>("quilletReadZip"),
                          found.function<decltype(ZipLibrary::readFile)>("quilletReadZipFile")};
    }();
    return library;
}

uint64_t mostUnpacked()
{
    return static_cast<uint64_t>(sysconf(_SC_PHYS_PAGES)) * static_cast<uint64_t>(sysconf(_SC_PAGESIZE)) / 2;
}

} // namespace

bool isPicture(std::string_view bytes)
{
    return bytes.size() <= Package::kMostPicture && bytes.starts_with("\x89PNG\r\n\x1a\n");
}

bool beginsAsNative(std::string_view bytes)
{
    // Behind the fixed part of the first entry's header stand its name and, since it has no more fields, its
    // content.
    constexpr size_t kFixedHeader = 30;
    return bytes.starts_with("PK\3\4") && bytes.size() > kFixedHeader &&
           bytes.substr(kFixedHeader).starts_with(std::string(kTypeName) + kType);
}

Package::Package(std::shared_ptr<const FileMapping> file)
    : m_file(std::move(file)), m_zip(zipLibrary().read(m_file->bytes().data(), m_file->bytes().size()))
{
}

Package::Package(const std::string& path) : Package(std::make_unique<PlainFile>(path)) {}

Package::Package(std::unique_ptr<PlainFile> file)
    : m_plain(std::move(file)), m_zip(zipLibrary().readFile(m_plain->descriptor(), m_plain->size()))
{
}

Package::~Package() = default;

void Package::prepare()
{
    zipLibrary();
}

bool Package::has(const std::string& name) const
{
    return m_zip->has(name);
}

std::string Package::read(const std::string& name, uint64_t limit) const
{
    const uint64_t size = m_zip->size(name);
    if (size > limit)
        throw std::runtime_error("\"" + name + "\" is too large in its package");
    std::string content;
    content.reserve(size);
    m_zip->read(name, [&](const char* data, size_t piece) { content.append(data, piece); });
    return content;
}

void Package::check(const std::string& name, const std::function<bool()>& goOn) const
{
    struct Stopped
    {
    };
    try {
        m_zip->read(name, [&](const char*, size_t) {
            if (!goOn())
                throw Stopped();
        });
    } catch (const Stopped&) {
    }
}

Packing Package::packing(const std::string& name) const
{
    return m_zip->packing(name);
}

void Package::readPacked(const std::string& name,
                         const std::function<void(const char* data, size_t size)>& take) const
{
    m_zip->readPacked(name, take);
}

std::shared_ptr<const FileMapping> Package::unpack(const std::string& name)
{
    const uint64_t most = mostUnpacked(), size = m_zip->size(name);
    if (size > most - std::min(m_unpacked, most))
        throw std::runtime_error(
            "it was packed by another program, and unpacked takes more memory than there is");
    m_unpacked += size;
    const int descriptor = memfd_create("quillet-model", MFD_CLOEXEC);
    if (descriptor < 0)
        throw std::runtime_error(std::strerror(errno));
    try {
        m_zip->read(name, [&](const char* data, size_t size) {
            if (!writeAll(descriptor, {data, size}))
                throw std::runtime_error(std::strerror(errno));
        });
    } catch (...) {
        close(descriptor);
        throw;
    }
    return FileMapping::adopt(descriptor);
}

} // namespace Vs::Native
