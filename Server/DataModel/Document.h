#pragma once

#include "Server/Base/LockBase.h"
#include "Server/Base/Object.h"
#include "Server/Base/Status.h"

#include <boost/filesystem/path.hpp>
#include <boost/uuid/uuid.hpp>

#include <map>
#include <memory>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace Vs {

class Asset;
class DocumentType;
struct DocumentFile;

/// An open document with its assets. Owned by DocumentMgr; it closes when its last lock is released. A
/// document that was never locked stays open until DocumentMgr::close. Main thread only.
class Document : public Implements<Document, Object, Lockable>
{
public:
    ~Document() override;

    const boost::uuids::uuid& identifier() const { return m_identifier; }
    DocumentType* documentType() const { return m_type; }

    unsigned assets() const { return static_cast<unsigned>(m_assets.size()); }
    Asset* asset(unsigned index) const { return m_assets.at(index).get(); }
    unsigned hiddenAssets() const { return static_cast<unsigned>(m_hiddenAssets.size()); }
    Asset* hiddenAsset(unsigned index) const { return m_hiddenAssets.at(index).get(); }
    /// The asset that a session of this document shows first; null in a document without visible assets.
    Asset* activeAsset() const { return m_activeAsset; }
    /// Ignored if the asset isn't one of this document's visible ones.
    void activeAsset(Asset* asset);

    /// The native file; empty for a document that was never saved, which includes one that was translated.
    const std::wstring& path() const { return m_path; }
    /// Where the next save writes. Nothing is written now, and an existing file there is not looked at.
    void path(const std::wstring& path);
    /// Makes the document a never-saved one, under its present name.
    void clearPath();
    bool isOnDisk() const { return !m_path.empty(); }
    /// `path()` if there is one, else the file that the document was translated from, else the display name.
    [[nodiscard]] std::wstring bestPath() const;
    /// The foreign file that the document was translated from; empty if it wasn't.
    const std::wstring& importedFrom() const { return m_importedFrom; }
    void importedFrom(const std::wstring& path) { m_importedFrom = path; }

    const std::wstring& displayName() const { return m_displayName; }
    void displayName(const std::wstring& name);

    /// Whether any asset, visible or hidden, is dirty. See Asset::isDirty.
    [[nodiscard]] bool isDirty(bool includeReferenced) const;

    /// Writes the document to its path. The file there is replaced as a whole or stays as it was, byte by
    /// byte; a symbolic link stays one. On success every asset is clean, and the sites are told documentSaved
    /// and documentUpdated. On failure returns false with one error that names the file and the cause, the
    /// document is unchanged, and the sites are told documentSaveFailed. Unless a handler agrees, it refuses
    /// a file that is write-protected (IDocMgmtHandler::onSavingReadOnlyFiles) and one that another program
    /// changed since it was opened or saved (onSavingChangedFiles). A file that is gone is written again. Can
    /// be cancelled.
    ///
    /// A document without a path gets one from a handler (IDocMgmtHandler::onSavingUnnamed); if that stops,
    /// nothing is saved and nothing is reported.
    bool save(Status& status);
    /// The same to another path, which is the document's own from then on. The sites are told
    /// documentUpdated; firing documentSaved is up to the caller.
    bool saveAs(const std::wstring& path, Status& status);
    /// Whether the file on the disk is write-protected.
    [[nodiscard]] bool isReadOnly() const;
    /// Asks the handlers, once, whether a document that is read-only may be changed
    /// (IDocMgmtHandler::onEditingReadOnlyDocuments). True for every other document.
    [[nodiscard]] bool mayBeEdited();

    /// The identifier on the cloud drive; empty for a document that isn't from there.
    const std::string& cloudId() const { return m_cloudId; }
    void setCloudId(const std::string& cloudId) { m_cloudId = cloudId; }
    bool isCloud() const { return !m_cloudId.empty(); }

    /// The version that wrote the native file, as SoftwareVersion counts them; 0 if it was never saved.
    unsigned lastSavedSoftwareVersion() const { return m_savedVersion; }

    void addLock(const UniqueString* source) override;
    void releaseLock(const UniqueString* source) override;
    unsigned locks() const;

    /// `name`, followed by a number if an asset of this document already has that name.
    [[nodiscard]] std::wstring uniqueAssetName(const std::wstring& name) const;
    /// The asset of that name, of that guid's text, or the only one whose name begins with the text; else
    /// null.
    [[nodiscard]] Asset* bestAsset(const std::wstring& name) const;

private:
    friend class Asset;
    friend class DocumentMgr;
    friend class DocumentBuild;
    friend class DocumentSave;
    Document(DocumentType* type, const std::wstring& displayName);
    Asset* adopt(std::unique_ptr<Asset> asset);
    /// An asset was renamed.
    void namesChanged();
    void takePath(const std::wstring& path);
    void tellUpdated();
    void tellFailure(const Status& status);

    boost::uuids::uuid m_identifier;
    DocumentType* m_type;
    std::wstring m_path;
    /// Cached, since it is compared often and costs a disk access.
    std::string m_comparablePath;
    std::wstring m_importedFrom;
    std::wstring m_displayName;
    std::string m_cloudId;
    unsigned m_savedVersion = 0;
    bool m_closing = false;
    std::unique_ptr<DocumentFile> m_file;
    std::vector<std::unique_ptr<Asset>> m_assets;
    std::vector<std::unique_ptr<Asset>> m_hiddenAssets;
    // So that a new name isn't compared with all others; empty until one is asked for.
    mutable std::unordered_set<std::wstring> m_names;
    mutable std::unordered_map<std::wstring, unsigned>
        m_freeNumbers; ///< None below is free behind that name.
    Asset* m_activeAsset = nullptr;
    std::map<const UniqueString*, unsigned> m_locks;
};

} // namespace Vs
