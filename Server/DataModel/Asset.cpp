#include "Server/DataModel/Asset.h"

#include "Server/Base/Require.h"
#include "Server/DataModel/AssetAdapter.h"
#include "Server/DataModel/AssetEvents.h"
#include "Server/DataModel/AssetType.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/IDocMgmtHandler.h"
#include "Server/DataModel/Model/ModelData.h"
#include "Server/Types/Uuid.h"

#include <unordered_set>

namespace Vs {

Asset::Asset(Document* document, const std::wstring& name, AssetType* type, Asset* parent, bool visible)
    : m_document(document),
      m_name(name),
      m_guid(makeUuid()),
      m_type(type),
      m_parent(parent),
      m_visible(visible),
      m_data(std::make_unique<ModelData>(name))
{
}

Asset::~Asset() = default;

Asset* Asset::create(Document* document, const std::wstring& name, AssetType* type)
{
    return createFromModel(document, name, type, nullptr);
}

Asset* Asset::createFromModel(Document* document, const std::wstring& name, AssetType* type,
                              std::shared_ptr<const ModelFile> model)
{
    assertMainThread();
    require(document != nullptr, "an asset is made for a document");
    Asset* asset = document->adopt(std::unique_ptr<Asset>(new Asset(document, name, type, nullptr, true)));
    if (model)
        asset->m_data->load(std::move(model));
    if (!document->activeAsset())
        document->activeAsset(asset);
    asset->m_fullyInitialized = true;
    AssetEvent event(asset);
    AssetEventSource::get()->fireAssetCreated(&event);
    return asset;
}

Asset* Asset::createHidden(Document* document, Asset* parent, const std::wstring& name, AssetType* type)
{
    assertMainThread();
    require(document != nullptr, "an asset is made for a document");
    if (!parent || parent->document() != document)
        return nullptr;
    Asset* asset = document->adopt(std::unique_ptr<Asset>(new Asset(document, name, type, parent, false)));
    parent->m_referenced.push_back(asset);
    asset->m_fullyInitialized = true;
    AssetEvent event(asset);
    AssetEventSource::get()->fireAssetCreated(&event);
    return asset;
}

void Asset::name(const std::wstring& name)
{
    if (name == m_name)
        return;
    m_name = name;
    m_document->namesChanged();
    m_data->root().name = SharedName(name);
    AssetEvent event(this);
    AssetEventSource::get()->fireAssetRenamed(&event);
    markDirty();
}

std::wstring Asset::setting(const std::string& key) const
{
    const auto found = settings().find(key);
    return found == settings().end() ? std::wstring() : found->second;
}

void Asset::setting(const std::string& key, const std::wstring& value)
{
    assertMainThread();
    if (!m_data->history().set(key, value))
        return;
    AssetEvent event(this);
    AssetEventSource::get()->fireAssetSettingsChanged(&event);
    if (!m_data->history().isOpen())
        markSmudge();
}

const std::map<std::string, std::wstring>& Asset::settings() const
{
    return m_data->settings();
}

std::wstring Asset::assetTypeName() const
{
    return m_type ? m_type->name() : std::wstring();
}

std::string Asset::assetTypeIdentifier() const
{
    return m_type ? m_type->identifier() : std::string();
}

bool Asset::isDirty(bool includeReferenced) const
{
    if (m_dirty || !includeReferenced)
        return m_dirty;
    // Many may refer to the same one, which is visited once.
    std::unordered_set<const Asset*> known{this};
    std::vector<const Asset*> waiting{this};
    while (!waiting.empty()) {
        const Asset* asset = waiting.back();
        waiting.pop_back();
        if (asset->m_dirty)
            return true;
        for (const Asset* referenced : asset->m_referenced)
            if (known.insert(referenced).second)
                waiting.push_back(referenced);
    }
    return false;
}

void Asset::markDirty()
{
    if (m_dirty)
        return;
    m_dirty = true;
    IDocMgmtHandler::notifyAssetDirtyFirstTime(this);
    AssetEvent event(this);
    AssetEventSource::get()->fireAssetDirtyChanged(&event);
}

void Asset::markSmudge()
{
    if (m_smudged)
        return;
    m_smudged = true;
    AssetEvent event(this);
    AssetEventSource::get()->fireAssetDirtyChanged(&event);
}

void Asset::markClean()
{
    if (!m_dirty && !m_smudged)
        return;
    m_dirty = m_smudged = false;
    AssetEvent event(this);
    AssetEventSource::get()->fireAssetDirtyChanged(&event);
}

const Component* Asset::components() const
{
    return &m_data->root();
}

const Component* Asset::findComponent(const std::string& id) const
{
    return m_data->find(id);
}

AssetAdapter* Asset::adapter() const
{
    if (!m_adapterAsked) {
        m_adapterAsked = true;
        m_adapter = AssetAdapter::make(const_cast<Asset*>(this));
    }
    return m_adapter.get();
}

void Asset::addLock(const UniqueString* source)
{
    m_document->addLock(source);
}

void Asset::releaseLock(const UniqueString* source)
{
    m_document->releaseLock(source);
}

} // namespace Vs
