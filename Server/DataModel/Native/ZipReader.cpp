#include "Server/DataModel/Native/ZipReader.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <memory>
#include <stdexcept>
#include <string_view>
#include <vector>
#include <zip.h>

namespace Vs::Native {

namespace {

// No model compresses better than this; whatever claims to is made to exhaust the memory.
constexpr uint64_t kBestRatio = 200;
constexpr uint64_t kMostUnpacked = uint64_t(16) << 30;
constexpr zip_int64_t kMostEntries = 100000;

bool isSafeName(std::string_view name)
{
    if (name.empty() || name.front() == '/' || name.find('\\') != name.npos || name.find(':') != name.npos)
        return false;
    while (!name.empty()) {
        const size_t slash = std::min(name.find('/'), name.size());
        if (name.substr(0, slash) == "..")
            return false;
        name.remove_prefix(std::min(slash + 1, name.size()));
    }
    return true;
}

std::string causeOf(zip_error_t& error)
{
    switch (zip_error_code_zip(&error)) {
    case ZIP_ER_NOZIP:
        return "it is not a package, or was cut short";
    case ZIP_ER_EXISTS:
        return "its package holds one name twice";
    default:
        return "its package is damaged (" + std::string(zip_error_strerror(&error)) + ")";
    }
}

class LibzipReader : public ZipReader
{
public:
    /// `makeSource(zip_error_t*)` gives the library's source of the bytes.
    template <class MakeSource>
    LibzipReader(size_t size, MakeSource&& makeSource) : m_size(size)
    {
        // The library takes an empty file for an empty package.
        if (size == 0)
            throw std::runtime_error("it is not a package, or was cut short");
        zip_error_t error;
        zip_error_init(&error);
        zip_source_t* source = makeSource(&error);
        if (source)
            m_zip = zip_open_from_source(source, ZIP_RDONLY | ZIP_CHECKCONS, &error);
        if (source && !m_zip)
            zip_source_free(source);
        const std::string cause = m_zip ? std::string() : causeOf(error);
        zip_error_fini(&error);
        if (!m_zip)
            throw std::runtime_error(cause);
        try {
            checkEntries();
        } catch (...) {
            zip_discard(m_zip);
            throw;
        }
    }
    ~LibzipReader() override { zip_discard(m_zip); }

    bool has(const std::string& name) const override { return zip_name_locate(m_zip, name.c_str(), 0) >= 0; }
    uint64_t size(const std::string& name) const override { return find(name).packing.size; }
    void read(const std::string& name, const Take& take) const override;
    Packing packing(const std::string& name) const override { return find(name).packing; }
    void readPacked(const std::string& name, const Take& take) const override;

private:
    struct Found
    {
        zip_uint64_t index;
        Packing packing;
    };

    void checkEntries() const
    {
        const zip_int64_t entries = zip_get_num_entries(m_zip, 0);
        if (entries > kMostEntries)
            throw std::runtime_error("its package holds an impossible number of entries");
        uint64_t packed = 0;
        for (zip_uint64_t i = 0; i < static_cast<zip_uint64_t>(entries); ++i) {
            const char* name = zip_get_name(m_zip, i, 0);
            if (!name || !isSafeName(name))
                throw std::runtime_error("its package holds an entry of the forbidden name \"" +
                                         std::string(name ? name : "") + "\"");
            zip_stat_t info;
            if (zip_stat_index(m_zip, i, 0, &info) == 0 && (info.valid & ZIP_STAT_COMP_SIZE))
                packed += std::min<uint64_t>(info.comp_size, m_size + 1);
        }
        // Entries that share a range of bytes would unpack to many times what the limit on each allows.
        if (packed > m_size)
            throw std::runtime_error("its package holds entries that lie one over the other");
    }
    Found find(const std::string& name) const;
    void take(const std::string& name, const Found& found, zip_flags_t how, uint64_t size,
              const Take& take) const;

    zip_t* m_zip = nullptr;
    size_t m_size;
};

LibzipReader::Found LibzipReader::find(const std::string& name) const
{
    const zip_int64_t index = zip_name_locate(m_zip, name.c_str(), 0);
    if (index < 0)
        throw std::runtime_error("\"" + name + "\" is missing in its package");
    zip_stat_t info;
    if (zip_stat_index(m_zip, static_cast<zip_uint64_t>(index), 0, &info) != 0 ||
        !(info.valid & ZIP_STAT_SIZE) || !(info.valid & ZIP_STAT_COMP_SIZE) || !(info.valid & ZIP_STAT_CRC) ||
        !(info.valid & ZIP_STAT_COMP_METHOD))
        throw std::runtime_error("\"" + name + "\" has no size in its package");
    if ((info.valid & ZIP_STAT_ENCRYPTION_METHOD) && info.encryption_method != ZIP_EM_NONE)
        throw std::runtime_error("\"" + name + "\" is encrypted in its package");
    if (info.comp_size > m_size || info.size > kMostUnpacked || info.size / kBestRatio > info.comp_size)
        throw std::runtime_error("\"" + name + "\" claims an impossible size in its package");
    return {static_cast<zip_uint64_t>(index), {info.comp_method, info.crc, info.comp_size, info.size}};
}

void LibzipReader::read(const std::string& name, const Take& take) const
{
    const Found found = find(name);
    this->take(name, found, 0, found.packing.size, take);
}

void LibzipReader::readPacked(const std::string& name, const Take& take) const
{
    const Found found = find(name);
    this->take(name, found, ZIP_FL_COMPRESSED, found.packing.packed, take);
}

void LibzipReader::take(const std::string& name, const Found& found, zip_flags_t how, uint64_t size,
                        const Take& take) const
{
    const auto damaged = [&](const char* cause) {
        return std::runtime_error("\"" + name + "\" is damaged in its package (" + cause + ")");
    };
    zip_file_t* file = zip_fopen_index(m_zip, found.index, how);
    if (!file)
        throw damaged(zip_strerror(m_zip));
    const std::unique_ptr<zip_file_t, int (*)(zip_file_t*)> closer(file, zip_fclose);
    std::vector<char> piece(std::min<uint64_t>(size + 1, 1 << 20));
    uint64_t sum = 0;
    // Read to the end: only then is the checksum compared.
    for (;;) {
        const zip_int64_t got = zip_fread(file, piece.data(), piece.size());
        if (got < 0)
            throw damaged(zip_file_strerror(file));
        if (got == 0)
            break;
        sum += static_cast<uint64_t>(got);
        if (sum > size)
            throw damaged("it is longer than it says");
        take(piece.data(), static_cast<size_t>(got));
    }
    if (sum != size)
        throw damaged("it is shorter than it says");
}

} // namespace

} // namespace Vs::Native

extern "C" Vs::Native::ZipReader* quilletReadZip(const char* data, size_t size)
{
    return new Vs::Native::LibzipReader(
        size, [&](zip_error_t* error) { return zip_source_buffer_create(data, size, 0, error); });
}

extern "C" Vs::Native::ZipReader* quilletReadZipFile(int descriptor, size_t size)
{
    return new Vs::Native::LibzipReader(size, [&](zip_error_t* error) -> zip_source_t* {
        // The library closes what it is given.
        std::FILE* file = fdopen(fcntl(descriptor, F_DUPFD_CLOEXEC, 0), "rb");
        zip_source_t* source =
            file ? zip_source_filep_create(file, 0, static_cast<zip_int64_t>(size), error) : nullptr;
        if (!file)
            zip_error_set(error, ZIP_ER_OPEN, errno);
        else if (!source)
            std::fclose(file);
        return source;
    });
}
