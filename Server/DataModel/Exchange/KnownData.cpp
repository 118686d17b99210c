#include "Server/DataModel/Exchange/KnownData.h"

#include "Server/DataModel/Model/PlainFile.h"

#include <QCryptographicHash>

#include <algorithm>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <stdexcept>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace Vs::Exchange {

namespace {

using Digests = std::vector<DataDigest>;

/// What one version of the kernel can read may crash another.
constexpr std::string_view kReader = "1-" QUILLET_KERNEL_VERSION "-";
constexpr size_t kMostDigests = 20'000;

QByteArrayView viewOf(std::string_view bytes)
{
    return {bytes.data(), static_cast<qsizetype>(bytes.size())};
}

Digests readAll(const std::string& path)
{
    try {
        PlainFile file(path);
        Digests digests(std::min<uint64_t>(file.size() / sizeof(DataDigest), 2 * kMostDigests));
        const size_t got = file.read(digests.data(), digests.size() * sizeof(DataDigest));
        digests.resize(got / sizeof(DataDigest));
        return digests;
    } catch (const std::runtime_error&) {
        return {}; // There is none yet.
    }
}

bool writeAll(int descriptor, const Digests& digests)
{
    const auto size = static_cast<ssize_t>(digests.size() * sizeof(DataDigest));
    return write(descriptor, digests.data(), static_cast<size_t>(size)) == size;
}

} // namespace

DataDigest digestOf(std::string_view exactData)
{
    QCryptographicHash hash(QCryptographicHash::Blake2b_256);
    hash.addData(viewOf(kReader));
    hash.addData(viewOf(exactData));
    const QByteArrayView result = hash.resultView();
    DataDigest digest;
    std::copy_n(result.begin(), digest.size(), digest.begin());
    return digest;
}

std::string hexOf(const DataDigest& digest)
{
    return QByteArray::fromRawData(digest.data(), qsizetype(digest.size())).toHex().toStdString();
}

bool KnownData::contains(const DataDigest& digest) const
{
    const Digests known = readAll(m_path);
    return std::find(known.begin(), known.end(), digest) != known.end();
}

void KnownData::add(const DataDigest& digest)
{
    Digests known = readAll(m_path);
    if (std::find(known.begin(), known.end(), digest) != known.end())
        return;
    constexpr mode_t kOwnerAlone = 0600;
    if (known.size() < kMostDigests) {
        // Another program may append at the same time: a write of this kind is atomic, and at the end.
        const int descriptor =
            open(m_path.c_str(), O_WRONLY | O_APPEND | O_CREAT | O_NOFOLLOW | O_CLOEXEC, kOwnerAlone);
        if (descriptor < 0)
            return;
        writeAll(descriptor, {digest});
        close(descriptor);
        return;
    }
    known.erase(known.begin(), known.begin() + static_cast<std::ptrdiff_t>(known.size() / 2));
    known.push_back(digest);
    const std::string scratch = m_path + "." + std::to_string(getpid()) + ".part";
    std::error_code ignored;
    try {
        const int descriptor = createPrivateFile(scratch);
        const bool written = writeAll(descriptor, known);
        close(descriptor);
        if (written)
            std::filesystem::rename(scratch, m_path, ignored);
    } catch (const std::runtime_error&) {
        return;
    }
    std::filesystem::remove(scratch, ignored);
}

} // namespace Vs::Exchange
