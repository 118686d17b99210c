#pragma once

#include "Server/Translate/Shares/PieceKeys.h"
#include "Server/Translate/Shares/ShareResult.h"

#include <string>

namespace Vs::Translate::Shares {

/// The readers' results for pieces, kept in a folder of the import cache, which limits its size. Several
/// processes may use one folder. What can't be kept is read again next time.
class PieceStore
{
public:
    static constexpr const char* kSuffix = ".piece";

    /// Keeps nothing without a folder.
    explicit PieceStore(std::string folder) : m_folder(std::move(folder)) {}

    bool isUsed() const { return !m_folder.empty(); }
    /// Appends the result for the piece, with its numbers, to a file; false if there is none. Marks it as
    /// just used.
    bool find(const PieceKey& piece, int file) const;
    void keep(const PieceKey& piece, const ShareBlock& block) const;

private:
    std::string m_folder;
};

} // namespace Vs::Translate::Shares
