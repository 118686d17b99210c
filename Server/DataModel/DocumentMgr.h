#pragma once

#include "Server/Base/Status.h"
#include "Server/DataModel/DocumentType.h"

#include <boost/filesystem/path.hpp>

#include <memory>
#include <string>
#include <vector>

namespace Vs {

class Asset;
class AssetType;
class Document;
class ModelFile;

/// All open documents, in the order in which they were opened, and the kinds of native documents. Main thread
/// only.
class DocumentMgr
{
public:
    static DocumentMgr* get();

    unsigned documents() const { return static_cast<unsigned>(m_documents.size()); }
    Document* document(unsigned index) const { return m_documents.at(index).get(); }
    /// The open document of exactly that path, after making it absolute; of that file name, if only one has
    /// it; null.
    Document* document(const std::wstring& path) const;
    /// Like `document(path)`, and also by display name or by the foreign file that it was translated from.
    [[nodiscard]] Document* bestDocument(const std::wstring& text) const;

    /// A new document with one active asset of the type. Null, with the reason, if the type's document type
    /// is unknown.
    Document* create(AssetType* type, Status& status);
    /// Opens a native file, or returns the already open document of that path. Null, with the reasons, on
    /// failure.
    Document* open(const std::wstring& path, Status& status);
    /// Whether the file is a native one, by its name or by its content.
    [[nodiscard]] bool isNative(const std::wstring& path) const;
    /// A new document that shows a model which was read from a foreign file; for translators. It isn't dirty:
    /// the file can be read again. Its asset is of the first type that is offered for creation.
    Document* createFromModel(const std::wstring& source, const std::shared_ptr<const ModelFile>& model,
                              Status& status);
    /// Closes at once, whatever locks it has. Unknown pointers are ignored.
    void close(Document* document);

    unsigned documentTypes() const { return static_cast<unsigned>(m_types.size()); }
    DocumentType* documentType(unsigned index) const { return m_types.at(index); }
    DocumentType* documentType(const std::string& identifier) const;
    /// Not owned; must be unregistered before it is destroyed. False if the identifier is taken.
    bool registerDocumentType(DocumentType* type);
    void unregisterDocumentType(DocumentType* type);

    /// Adds the assets that no other asset and no document's list refers to.
    void getUnreferencedAssets(std::vector<Asset*>& assets) const;

    /// The asset that the user works on, as set by the sessions; what a translator saves if its context names
    /// none.
    Asset* activeAsset() const { return m_activeAsset; }
    void activeAsset(Asset* asset) { m_activeAsset = asset; }

private:
    friend class Document;
    friend class DocumentBuild;
    friend class DocumentSave;
    DocumentMgr() = default;
    Document* openNative(const std::wstring& path, Status& status);
    Document* add(AssetType* type, const std::wstring& displayName, Status& status);

    std::vector<std::unique_ptr<Document>> m_documents;
    std::vector<DocumentType*> m_types;
    Asset* m_activeAsset = nullptr;
    unsigned m_untitled = 0;
};

} // namespace Vs
