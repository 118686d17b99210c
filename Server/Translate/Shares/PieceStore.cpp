#include "Server/Translate/Shares/PieceStore.h"

#include "Server/Base/SystemCalls.h"
#include "Server/DataModel/Model/FileMapping.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <stdexcept>
#include <sys/stat.h>
#include <unistd.h>
#include <unordered_map>
#include <xxhash.h>

namespace Vs::Translate::Shares {

namespace {

/// What precedes the block: a disk may return other bytes than it was given.
uint64_t checkOf(std::string_view block)
{
    return XXH3_64bits(block.data(), block.size());
}

} // namespace

bool PieceStore::find(const PieceKey& piece, int file) const
{
    const int found =
        isUsed() ? open((m_folder + '/' + piece.key + kSuffix).c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW)
                 : -1;
    if (found < 0)
        return false;
    futimens(found, nullptr);
    try {
        const auto mapping = FileMapping::adopt(found);
        std::string_view bytes = mapping->bytes();
        uint64_t check;
        if (bytes.size() <= sizeof check)
            return false;
        std::memcpy(&check, bytes.data(), sizeof check);
        bytes.remove_prefix(sizeof check);
        if (checkOf(bytes) != check)
            return false;
        const auto block = ShareBlock::take(bytes);
        if (!block)
            return false;
        const auto text = block->renumbered([&](uint32_t place) {
            return place < piece.numbers.size() ? std::optional(piece.numbers[place]) : std::nullopt;
        });
        const off_t begin = lseek(file, 0, SEEK_END);
        if (text && writeAll(file, *text))
            return true;
        static_cast<void>(ftruncate(file, begin));
    } catch (const std::runtime_error&) {
        // It is read again.
    }
    return false;
}

void PieceStore::keep(const PieceKey& piece, const ShareBlock& block) const
{
    if (!isUsed())
        return;
    std::unordered_map<uint32_t, uint32_t> places;
    for (uint32_t i = 0; i < piece.numbers.size(); ++i)
        places[piece.numbers[i]] = i;
    const auto text = block.renumbered([&](uint32_t number) {
        const auto found = places.find(number);
        return found == places.end() ? std::nullopt : std::optional(found->second);
    });
    if (!text)
        return;
    const std::string path = m_folder + '/' + piece.key + kSuffix;
    const std::string scratch = path + "." + std::to_string(getpid());
    const int file = open(scratch.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (file < 0)
        return;
    const uint64_t check = checkOf(*text);
    const bool isWritten =
        writeAll(file, {reinterpret_cast<const char*>(&check), sizeof check}) && writeAll(file, *text);
    close(file);
    if (!isWritten || std::rename(scratch.c_str(), path.c_str()) != 0)
        unlink(scratch.c_str());
}

} // namespace Vs::Translate::Shares
