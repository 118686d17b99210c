#include "Server/DataModel/Native/ReadBack.h"

#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Model/ModelData.h"
#include "Server/DataModel/Model/PlainFile.h"
#include "Server/DataModel/Native/Package.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <map>
#include <stdexcept>
#include <unistd.h>
#include <vector>
#include <zlib.h>

namespace Vs::Native {

namespace {

constexpr size_t kPiece = size_t(1) << 20;

/// Passes on the bytes of a range in pieces, each with its offset in the range.
template <class Take>
void readStretch(int descriptor, uint64_t place, uint64_t size, Take&& take)
{
    std::vector<char> piece(std::min<uint64_t>(kPiece, size));
    for (uint64_t done = 0; done < size;) {
        const size_t wanted = std::min<uint64_t>(piece.size(), size - done);
        const ssize_t got = pread(descriptor, piece.data(), wanted, static_cast<off_t>(place + done));
        if (got < 0 && errno == EINTR)
            continue;
        if (got <= 0)
            throw std::runtime_error("what was written can't be read back");
        take(done, std::string_view(piece.data(), static_cast<size_t>(got)));
        done += static_cast<uint64_t>(got);
    }
}

[[noreturn]] void differs()
{
    throw std::runtime_error("what can be read back isn't what was written");
}

void compareBytes(int descriptor, const PackageWriter::Entry& entry, std::string_view original)
{
    if (entry.size != original.size())
        differs();
    readStretch(descriptor, entry.place, entry.size, [&](uint64_t done, std::string_view bytes) {
        if (original.substr(done, bytes.size()) != bytes)
            differs();
    });
}

void compareChecksum(int descriptor, const PackageWriter::Entry& entry)
{
    uLong crc = 0;
    readStretch(descriptor, entry.place, entry.size, [&](uint64_t, std::string_view bytes) {
        crc = crc32_z(crc, reinterpret_cast<const Bytef*>(bytes.data()), bytes.size());
    });
    if (crc != entry.crc)
        differs();
}

// Models that were copied keep the checksum that they had, right or wrong: what counts is that they were
// copied.
std::map<std::string, std::string_view> copiedModels(const DocumentContent& content)
{
    std::map<std::string, std::string_view> copied;
    for (size_t i = 0; i < content.assets().size(); ++i)
        if (const StoredPart* stored = content.assets()[i]->data().stored())
            copied[content.parts()[i].name] = stored->file->bytes().substr(stored->place, stored->size);
    return copied;
}

} // namespace

void readBack(const std::string& path, const PackageWriter& writer, const DocumentContent& content)
{
    PlainFile file(path);
    // From the disk, so far as the system can be asked for that, and not from its memory.
    posix_fadvise(file.descriptor(), 0, 0, POSIX_FADV_DONTNEED);
    const auto copied = copiedModels(content);
    for (const PackageWriter::Entry& entry : writer.entries()) {
        const auto original = copied.find(entry.name);
        if (original != copied.end())
            compareBytes(file.descriptor(), entry, original->second);
        else if (entry.method == 0)
            compareChecksum(file.descriptor(), entry);
    }
    if (Package(path).read(kManifestName, Package::kMostManifest) != content.manifest().write())
        differs();
}

} // namespace Vs::Native
