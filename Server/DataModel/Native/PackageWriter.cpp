#include "Server/DataModel/Native/PackageWriter.h"

#include "Server/Base/Require.h"

#include <algorithm>
#include <unistd.h>
#include <zlib.h>

namespace Vs::Native {

namespace {

constexpr size_t kBufferSize = 1 << 18;

// Sizes and places beyond this stand in the wide fields of the zip64 extension.
constexpr uint64_t kNarrowLimit = 0xffffffff;
constexpr uint16_t kUsualVersion = 10, kWideVersion = 45;
constexpr uint16_t kMadeByUnix = 3 << 8;
constexpr uint16_t kUtf8Names = 1 << 11;
constexpr uint32_t kPlainFile = 0100644u << 16;
constexpr uint16_t kWideField = 1, kPaddingField = 0xd935;
constexpr size_t kFieldHeader = 4, kWideLocalField = kFieldHeader + 16;

// The format's numbers are little-endian, as are those of every machine this runs on.
class Bytes
{
public:
    template <class T>
    Bytes& put(T value)
    {
        m_bytes.append(reinterpret_cast<const char*>(&value), sizeof value);
        return *this;
    }
    Bytes& u16(uint64_t value) { return put(static_cast<uint16_t>(value)); }
    Bytes& u32(uint64_t value) { return put(static_cast<uint32_t>(value)); }
    Bytes& u64(uint64_t value) { return put(value); }
    Bytes& text(const std::string& text)
    {
        m_bytes += text;
        return *this;
    }
    const std::string& str() const { return m_bytes; }

private:
    std::string m_bytes;
};

uint32_t narrow(uint64_t value)
{
    return static_cast<uint32_t>(std::min(value, kNarrowLimit));
}

uint32_t crcOf(uint32_t before, const void* data, size_t size)
{
    // Of no data at all, which may be at no address, the library gives the checksum of a beginning.
    if (size == 0)
        return before;
    return static_cast<uint32_t>(crc32_z(before, static_cast<const Bytef*>(data), size));
}

} // namespace

PackageWriter::PackageWriter(SafeFile& file) : m_file(file)
{
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    m_time = static_cast<uint16_t>(local.tm_hour << 11 | local.tm_min << 5 | local.tm_sec / 2);
    m_date =
        static_cast<uint16_t>(std::max(local.tm_year - 80, 0) << 9 | (local.tm_mon + 1) << 5 | local.tm_mday);
}

void PackageWriter::append(const void* data, size_t size)
{
    if (m_buffer.size() + size > kBufferSize)
        flushBuffer();
    if (size > kBufferSize)
        m_file.append(data, size);
    else
        m_buffer.append(static_cast<const char*>(data), size);
}

void PackageWriter::flushBuffer()
{
    m_file.append(m_buffer.data(), m_buffer.size());
    m_buffer.clear();
}

// The padding is a field of its own behind the name; the wide sizes take its beginning where they are needed.
std::string PackageWriter::localHeader(const Entry& entry, size_t padding) const
{
    const bool wide = entry.size >= kNarrowLimit;
    Bytes bytes;
    bytes.u32(0x04034b50).u16(wide ? kWideVersion : kUsualVersion).u16(kUtf8Names).u16(0).u16(m_time);
    bytes.u16(m_date).u32(entry.crc).u32(wide ? kNarrowLimit : entry.size);
    bytes.u32(wide ? kNarrowLimit : entry.size).u16(entry.name.size()).u16(padding).text(entry.name);
    if (wide) {
        bytes.u16(kWideField).u16(16).u64(entry.size).u64(entry.size);
        padding -= kWideLocalField;
    }
    if (padding > 0)
        bytes.u16(kPaddingField).u16(padding - kFieldHeader).text(std::string(padding - kFieldHeader, '\0'));
    return bytes.str();
}

void PackageWriter::add(const std::string& name, std::string_view content)
{
    Entry entry{name, position(), 0, content.size(), crcOf(0, content.data(), content.size())};
    const std::string header = localHeader(entry, 0);
    append(header.data(), header.size());
    entry.place = position();
    append(content.data(), content.size());
    m_entries.push_back(entry);
}

void PackageWriter::beginPart(const std::string& name)
{
    constexpr uint64_t kPlainHeader = 30;
    Entry entry{name, position(), 0, 0, 0};
    const uint64_t bare = entry.header + kPlainHeader + name.size();
    // Room for the wide sizes is kept always: how long the part gets is known at its end.
    m_padding = kWideLocalField + kFieldHeader;
    m_padding += (kAlignment - (bare + m_padding) % kAlignment) % kAlignment;
    entry.place = bare + m_padding;
    const std::string header = localHeader(entry, m_padding);
    append(header.data(), header.size());
    m_entries.push_back(entry);
}

PackageWriter::Entry PackageWriter::endPart(uint32_t crc)
{
    flushBuffer();
    require(!m_entries.empty(), "a part that ends was begun");
    Entry& entry = m_entries.back();
    entry.size = m_file.position() - entry.place;
    entry.crc = crc;
    const std::string header = localHeader(entry, m_padding);
    m_file.writeAt(entry.header, header.data(), header.size());
    return entry;
}

PackageWriter::Entry PackageWriter::addPart(const std::string& name, const StoredPart& part)
{
    beginPart(name);
    flushBuffer();
    const char* bytes = part.file->bytes().data() + part.place;
    const int source = part.file->reopen();
    bool copied = false;
    try {
        copied = source >= 0 && m_file.copy(source, part.place, part.size);
    } catch (...) {
        close(source);
        throw;
    }
    if (source >= 0)
        close(source);
    if (!copied)
        m_file.append(bytes, part.size);
    return endPart(part.crc ? *part.crc : crcOf(0, bytes, part.size));
}

void PackageWriter::finish()
{
    const uint64_t directory = position();
    for (const Entry& entry : m_entries) {
        const bool wideSize = entry.size >= kNarrowLimit, widePlace = entry.header >= kNarrowLimit;
        Bytes extra;
        if (wideSize)
            extra.u64(entry.size).u64(entry.size);
        if (widePlace)
            extra.u64(entry.header);
        const size_t extraSize = extra.str().empty() ? 0 : kFieldHeader + extra.str().size();
        const uint16_t version = extraSize ? kWideVersion : kUsualVersion;
        Bytes bytes;
        bytes.u32(0x02014b50).u16(kMadeByUnix | version).u16(version).u16(kUtf8Names).u16(0).u16(m_time);
        bytes.u16(m_date).u32(entry.crc).u32(narrow(entry.size)).u32(narrow(entry.size));
        bytes.u16(entry.name.size()).u16(extraSize).u16(0).u16(0).u16(0).u32(kPlainFile);
        bytes.u32(narrow(entry.header)).text(entry.name);
        if (extraSize)
            bytes.u16(kWideField).u16(extra.str().size()).text(extra.str());
        append(bytes.str().data(), bytes.str().size());
    }
    const uint64_t end = position(), size = end - directory, count = m_entries.size();
    constexpr uint64_t kMostEntries = 0xffff;
    Bytes bytes;
    if (end >= kNarrowLimit || count >= kMostEntries) {
        bytes.u32(0x06064b50).u64(44).u16(kMadeByUnix | kWideVersion).u16(kWideVersion).u32(0).u32(0);
        bytes.u64(count).u64(count).u64(size).u64(directory);
        bytes.u32(0x07064b50).u32(0).u64(end).u32(1);
    }
    bytes.u32(0x06054b50).u16(0).u16(0).u16(std::min(count, kMostEntries)).u16(std::min(count, kMostEntries));
    bytes.u32(narrow(size)).u32(narrow(directory)).u16(0);
    append(bytes.str().data(), bytes.str().size());
    flushBuffer();
}

void PackageWriter::Sink::reserve(size_t size)
{
    m_reserved = size;
    const std::string room(size, '\0');
    m_writer.append(room.data(), size);
}

void PackageWriter::Sink::append(const void* data, size_t size)
{
    m_writer.append(data, size);
    m_crc = crcOf(m_crc, data, size);
    m_behind += size;
}

void PackageWriter::Sink::finish(const void* front, size_t size)
{
    m_writer.flushBuffer();
    m_writer.m_file.writeAt(m_writer.m_entries.back().place, front, size);
    m_crc =
        static_cast<uint32_t>(crc32_combine(crcOf(0, front, size), m_crc, static_cast<z_off_t>(m_behind)));
}

} // namespace Vs::Native
