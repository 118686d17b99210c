#pragma once

#include "Server/Base/LockBase.h"
#include "Server/Base/Object.h"
#include "Server/Base/Status.h"

#include <boost/uuid/uuid.hpp>

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace Vs {

class AssetAdapter;
class AssetType;
class Component;
class Document;
class ModelData;
class ModelFile;

/// One model inside a document: a component tree of bodies with names, colours and placements, and the data
/// behind it that transactions change. Owned by its document. Main thread only.
class Asset : public Implements<Asset, Object, Lockable>
{
public:
    /// Makes an asset and adds it to the document. The first visible one becomes the document's active asset.
    static Asset* create(Document* document, const std::wstring& name, AssetType* type);
    /// The same with a model that was read from a file; for translators.
    static Asset* createFromModel(Document* document, const std::wstring& name, AssetType* type,
                                  std::shared_ptr<const ModelFile> model);
    /// The same for an asset that isn't shown by itself. Null without a parent of the same document.
    [[nodiscard]] static Asset* createHidden(Document* document, Asset* parent, const std::wstring& name,
                                             AssetType* type);
    ~Asset() override;

    const std::wstring& name() const { return m_name; }
    /// A new name changes the asset: it becomes dirty.
    void name(const std::wstring& name);
    const boost::uuids::uuid& guid() const { return m_guid; }
    AssetType* assetType() const { return m_type; }
    /// The type's name and identifier; empty without a type.
    std::wstring assetTypeName() const;
    std::string assetTypeIdentifier() const;
    Document* document() const { return m_document; }

    /// Changed since the last save. With `includeReferenced`, also true if a referred asset is.
    [[nodiscard]] bool isDirty(bool includeReferenced) const;
    /// Marks the asset as changed and asks the handlers at the first change
    /// (IDocMgmtHandler::onAssetDirtyFirstTime).
    void markDirty();
    /// A smudged asset has changes that need no saving by themselves, such as a moved camera.
    void markSmudge();
    bool isSmudge() const { return m_smudged; }
    /// Forgets both marks, as after a save.
    void markClean();

    /// Small values that belong to the asset and are saved with it, under keys of the caller's own. Empty
    /// text where there is none; setting empty text removes it. A change within a Transaction is a part of
    /// its step, and undone with it; any other change smudges the asset. Each tells the sites
    /// (AssetEventSite::assetSettingsChanged).
    [[nodiscard]] std::wstring setting(const std::string& key) const;
    void setting(const std::string& key, const std::wstring& value);
    const std::map<std::string, std::wstring>& settings() const;

    bool isVisible() const { return m_visible; }
    /// The asset that a hidden one belongs to; null for visible ones.
    Asset* parent() const { return m_parent; }
    unsigned refdAssets() const { return static_cast<unsigned>(m_referenced.size()); }
    Asset* refdAsset(unsigned index) const { return m_referenced.at(index); }
    /// False from the asset's creation until its first content is complete.
    bool fullyInitialized() const { return m_fullyInitialized; }

    /// The root of the component tree; its own name is the asset's, its placement the identity. Never null.
    /// The components keep their addresses until an event says that they were removed.
    const Component* components() const;
    /// The component of that id (Component::id), or null.
    [[nodiscard]] const Component* findComponent(const std::string& id) const;

    /// What libraries above attach to this asset, made at the first call; null if nobody offers one.
    AssetAdapter* adapter() const;

    /// While an asset or its document has a lock the document stays open. See LockBase.
    void addLock(const UniqueString* source) override;
    void releaseLock(const UniqueString* source) override;

    /// The model's data; for transactions, translators and measuring inside this library.
    ModelData& data() const { return *m_data; }

private:
    friend class Document;
    friend class DocumentBuild;
    friend class DocumentSave;
    Asset(Document* document, const std::wstring& name, AssetType* type, Asset* parent, bool visible);

    Document* m_document;
    std::wstring m_name;
    boost::uuids::uuid m_guid;
    AssetType* m_type;
    Asset* m_parent;
    bool m_visible;
    bool m_dirty = false;
    bool m_smudged = false;
    bool m_fullyInitialized = false;
    std::vector<Asset*> m_referenced;
    std::unique_ptr<ModelData> m_data;
    mutable std::unique_ptr<AssetAdapter> m_adapter;
    mutable bool m_adapterAsked = false;
};

} // namespace Vs
