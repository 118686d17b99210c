#include "Server/Translate/WholeCharacters.h"

#include <algorithm>
#include <fstream>

namespace Vs::Translate {

namespace {

constexpr size_t kPiece = 1 << 20;
constexpr size_t kMostFollowing = 3; // bytes of a character after its first

bool isFollowing(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

/// Returns whether the piece was changed. The bytes after kPiece are the ones that the next piece begins
/// with.
bool mend(std::string& piece)
{
    bool changed = false;
    for (size_t at = 0; (at = piece.find('\n', at)) < kPiece; ++at) {
        size_t end = at + 1;
        while (end < piece.size() && end <= at + kMostFollowing && isFollowing(piece[end]))
            ++end;
        if (end == at + 1)
            continue;
        const auto begin = piece.begin() + static_cast<std::ptrdiff_t>(at);
        std::rotate(begin, begin + 1, piece.begin() + static_cast<std::ptrdiff_t>(end));
        changed = true;
    }
    return changed;
}

} // namespace

void keepCharactersWhole(const std::string& path)
{
    std::fstream file(path, std::ios::in | std::ios::out | std::ios::binary);
    std::string piece;
    for (std::streamoff offset = 0; file; offset += std::streamoff{kPiece}) {
        piece.resize(kPiece + kMostFollowing);
        file.seekg(offset);
        file.read(piece.data(), std::streamsize(piece.size()));
        piece.resize(static_cast<size_t>(file.gcount()));
        const bool atEnd = file.eof();
        file.clear();
        if (mend(piece)) {
            file.seekp(offset);
            file.write(piece.data(), std::streamsize(piece.size()));
        }
        if (atEnd)
            break;
    }
}

} // namespace Vs::Translate
