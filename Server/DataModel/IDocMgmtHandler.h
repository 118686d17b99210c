#pragma once

#include <set>

namespace Vs {

class Asset;
class Document;

/// A handler's answer.
enum EDocMgmtOpCode {
    eDocMgmtStop = 0,      ///< Give the operation up.
    eDocMgmtNoOpinion = 1, ///< Let the others decide; go on if none stops it.
    eDocMgmtGoOn = 2,      ///< Go on.
};

/// Asks the user, or decides in the user's place, before documents close, are saved or get changed. Every
/// handler is asked, in the order of construction, until one stops the operation.
class IDocMgmtHandler
{
public:
    using Documents = std::set<Document*>;

    /// Registers the handler.
    IDocMgmtHandler();
    virtual ~IDocMgmtHandler();
    IDocMgmtHandler(const IDocMgmtHandler&) = delete;
    IDocMgmtHandler& operator=(const IDocMgmtHandler&) = delete;

    virtual EDocMgmtOpCode onPreClosingDocuments(const Documents&) { return eDocMgmtNoOpinion; }
    virtual EDocMgmtOpCode onSavingMigratedFiles(const Documents&) { return eDocMgmtNoOpinion; }
    virtual EDocMgmtOpCode onClosingDirtyDocuments(const Documents&) { return eDocMgmtNoOpinion; }
    virtual EDocMgmtOpCode onSavingFirstTime(const Documents&) { return eDocMgmtNoOpinion; }
    /// Write-protected files that are about to be replaced. Here and in onSavingChangedFiles a handler may
    /// give a document another path instead (Document::path), where it is then saved. One that stops has
    /// asked the user: the save's status then counts as reported.
    virtual EDocMgmtOpCode onSavingReadOnlyFiles(const Documents&) { return eDocMgmtNoOpinion; }
    virtual EDocMgmtOpCode onEditingReadOnlyDocuments(const Documents&) { return eDocMgmtNoOpinion; }
    virtual EDocMgmtOpCode onAssetDirtyFirstTime(Asset*) { return eDocMgmtNoOpinion; }
    /// Files whose content another program changed since they were opened or saved.
    virtual EDocMgmtOpCode onSavingChangedFiles(const Documents&) { return eDocMgmtNoOpinion; }

    /// Documents that are to be saved and have no path; a handler may give them one (Document::path).
    virtual EDocMgmtOpCode onSavingUnnamed(const Documents&) { return eDocMgmtNoOpinion; }

    [[nodiscard]] static EDocMgmtOpCode notifyPreClosingDocuments(const Documents& documents);
    [[nodiscard]] static EDocMgmtOpCode notifySavingMigratedFiles(const Documents& documents);
    /// Passes on only the dirty documents; continues without asking if there are none.
    [[nodiscard]] static EDocMgmtOpCode notifyClosingDirtyDocuments(const Documents& documents);
    [[nodiscard]] static EDocMgmtOpCode notifySavingFirstTime(const Documents& documents);
    /// Go on only if a handler says so: no opinion, where nobody has one, means that the file stays as it is.
    [[nodiscard]] static EDocMgmtOpCode notifySavingReadOnlyFiles(const Documents& documents);
    [[nodiscard]] static EDocMgmtOpCode notifySavingChangedFiles(const Documents& documents);
    [[nodiscard]] static EDocMgmtOpCode notifySavingUnnamed(const Documents& documents);
    [[nodiscard]] static EDocMgmtOpCode notifyEditingReadOnlyDocuments(const Documents& documents);
    static EDocMgmtOpCode notifyAssetDirtyFirstTime(Asset* asset);
};

} // namespace Vs
