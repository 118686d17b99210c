#pragma once

#include "Server/Translate/Shares/PieceKeys.h"
#include "Server/Translate/Shares/ShareResult.h"

#include <string>

namespace Vs::Translate::Shares {

/// What readers made of pieces, kept in a folder of the import cache, which bounds it. Several processes may
/// use one folder. What can't be kept is read again the next time.
class PieceStore
{
public:
    static constexpr const char* kSuffix = ".piece";

    /// Keeps nothing without a folder.
    explicit PieceStore(std::string folder) : m_folder(std::move(folder)) {}

    bool isUsed() const { return !m_folder.empty(); }
    /// Appends what is known of the piece to a file, with its numbers; false if nothing is. Marks it as used
    /// now.
    bool find(const PieceKey& piece, int file) const;
    void keep(const PieceKey& piece, const ShareBlock& block) const;

private:
    std::string m_folder;
};

} // namespace Vs::Translate::Shares
