#pragma once

#include "Server/DataModel/Model/ModelFile.h"
#include "Server/DataModel/Model/StoredPart.h"
#include "Server/DataModel/Native/SafeFile.h"
#include "Server/DataModel/Native/ZipReader.h"

#include <ctime>
#include <string>
#include <vector>

namespace Vs::Native {

/// Writes a zip package whose entries are stored uncompressed, so that they can be mapped in place. It is
/// written front to back without knowing sizes beforehand, and unchanged entries are copied between packages
/// by the file system; libraries that write packages offer neither. Reading is left to a library. Throws
/// std::runtime_error.
class PackageWriter
{
public:
    /// The alignment of the content of a part, so that a file system can share the blocks.
    static constexpr uint64_t kAlignment = 4096;

    explicit PackageWriter(SafeFile& file);

    struct Entry
    {
        std::string name;
        uint64_t header = 0; ///< Offset of the entry.
        uint64_t place = 0;  ///< Offset of its content.
        uint64_t size = 0;
        uint32_t crc = 0;
        uint16_t method = 0; ///< Of packing (Packing::method).
        uint64_t packed = 0; ///< Bytes in the package; equals `size` if it is stored.
    };

    /// A small entry. Names are ASCII.
    void add(const std::string& name, std::string_view content);
    /// An entry copied as it is in another package, with its checksum: damage there is detected here too.
    /// `copy(take)` passes its bytes to `take(const char*, size_t)`.
    template <class Copy>
    void addPacked(const std::string& name, const Packing& packing, Copy&& copy)
    {
        beginPacked(name, packing);
        copy([this](const char* data, size_t size) { append(data, size); });
        endPacked();
    }
    /// An entry that is copied from another file, with the checksum that it had there. Returns its entry.
    Entry addPart(const std::string& name, const StoredPart& part);
    /// An entry that is written by `write(ModelSink&)`.
    template <class Write>
    Entry addModel(const std::string& name, Write&& write)
    {
        beginPart(name);
        Sink sink(*this);
        write(static_cast<ModelSink&>(sink));
        return endPart(sink.crc());
    }
    /// After the last entry.
    void finish();
    /// What has been written so far.
    const std::vector<Entry>& entries() const { return m_entries; }

private:
    class Sink : public ModelSink
    {
    public:
        explicit Sink(PackageWriter& writer) : m_writer(writer) {}
        void reserve(size_t size) override;
        void append(const void* data, size_t size) override;
        void finish(const void* front, size_t size) override;
        uint32_t crc() const { return m_crc; }

    private:
        PackageWriter& m_writer;
        size_t m_reserved = 0;
        uint64_t m_behind = 0; // bytes after the reserved ones
        uint32_t m_crc = 0;    // of those, and at the end of all
    };

    void beginPacked(const std::string& name, const Packing& packing);
    void endPacked();
    void beginPart(const std::string& name);
    Entry endPart(uint32_t crc);
    void append(const void* data, size_t size);
    void flushBuffer();
    uint64_t position() const { return m_file.position() + m_buffer.size(); }
    std::string localHeader(const Entry& entry, size_t padding) const;

    SafeFile& m_file;
    std::string m_buffer; // collects many small pieces into few calls
    std::vector<Entry> m_entries;
    size_t m_padding = 0; // of the part being written
    uint16_t m_time, m_date;
};

} // namespace Vs::Native
