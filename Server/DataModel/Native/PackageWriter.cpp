#include "Server/DataModel/Native/PackageWriter.h"

#include "Server/Base/Require.h"

#include <algorithm>
#include <stdexcept>
#include <unistd.h>
#include <zlib.h>

namespace Vs::Native {

namespace {

constexpr size_t kBufferSize = 1 << 18;

// Sizes and places beyond this stand in the wide fields of the zip64 extension.
constexpr uint64_t kNarrowLimit = 0xffffffff;
constexpr uint16_t kStoredVersion = 10, kPackedVersion = 20, kWideVersion = 45;
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

bool isWide(const PackageWriter::Entry& entry)
{
    return std::max(entry.size, entry.packed) >= kNarrowLimit;
}

// The least version of the format that a reader must know.
uint16_t usualVersion(const PackageWriter::Entry& entry)
{
    return entry.method == 0 ? kStoredVersion : kPackedVersion;
}

uint32_t crcOf(uint32_t before, const void* data, size_t size)
{
    // For no data, whose address may be null, the library returns the initial checksum.
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
    const bool wide = isWide(entry);
    Bytes bytes;
    bytes.u32(0x04034b50).u16(wide ? kWideVersion : usualVersion(entry)).u16(kUtf8Names).u16(entry.method);
    bytes.u16(m_time).u16(m_date).u32(entry.crc).u32(wide ? kNarrowLimit : entry.packed);
    bytes.u32(wide ? kNarrowLimit : entry.size).u16(entry.name.size()).u16(padding).text(entry.name);
    if (wide) {
        bytes.u16(kWideField).u16(16).u64(entry.size).u64(entry.packed);
        padding -= kWideLocalField;
    }
    if (padding > 0)
        bytes.u16(kPaddingField).u16(padding - kFieldHeader).text(std::string(padding - kFieldHeader, '\0'));
    return bytes.str();
}

void PackageWriter::add(const std::string& name, std::string_view content)
{
    const uint32_t crc = crcOf(0, content.data(), content.size());
    addPacked(name, {0, crc, content.size(), content.size()},
              [&](const auto& take) { take(content.data(), content.size()); });
}

void PackageWriter::beginPacked(const std::string& name, const Packing& packing)
{
    Entry entry{name, position(), 0, packing.size, packing.crc, packing.method, packing.packed};
    const std::string header = localHeader(entry, isWide(entry) ? kWideLocalField : 0);
    append(header.data(), header.size());
    entry.place = position();
    m_entries.push_back(std::move(entry));
}

void PackageWriter::endPacked()
{
    const Entry& entry = m_entries.back();
    if (position() - entry.place != entry.packed)
        throw std::runtime_error("\"" + entry.name + "\" could not be copied from its package");
}

void PackageWriter::beginPart(const std::string& name)
{
    constexpr uint64_t kPlainHeader = 30;
    Entry entry{name, position()};
    const uint64_t bare = entry.header + kPlainHeader + name.size();
    // Room for the wide sizes is always reserved, since the length of the part is known only at its end.
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
    entry.size = entry.packed = m_file.position() - entry.place;
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
        const bool widePlace = entry.header >= kNarrowLimit;
        Bytes extra;
        if (isWide(entry))
            extra.u64(entry.size).u64(entry.packed);
        if (widePlace)
            extra.u64(entry.header);
        const size_t extraSize = extra.str().empty() ? 0 : kFieldHeader + extra.str().size();
        const bool wideSizes = isWide(entry);
        const uint16_t version = extraSize ? kWideVersion : usualVersion(entry);
        Bytes bytes;
        bytes.u32(0x02014b50).u16(kMadeByUnix | version).u16(version).u16(kUtf8Names).u16(entry.method);
        bytes.u16(m_time).u16(m_date).u32(entry.crc).u32(wideSizes ? kNarrowLimit : entry.packed);
        bytes.u32(wideSizes ? kNarrowLimit : entry.size);
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
