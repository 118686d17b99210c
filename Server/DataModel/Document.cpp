#include "Server/DataModel/Document.h"

#include "Server/Base/PathInfo.h"
#include "Server/Base/Require.h"
#include "Server/Base/Strings.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/AssetEvents.h"
#include "Server/DataModel/CloudIdentifiers.h"
#include "Server/DataModel/DocumentEvents.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Server/DataModel/HeldFiles.h"
#include "Server/DataModel/IDocMgmtHandler.h"
#include "Server/DataModel/Native/DocumentFile.h"
#include "Server/DataModel/Native/DocumentSave.h"
#include "Server/DataModel/Native/Paths.h"
#include "Server/Types/Uuid.h"

#include <boost/filesystem/operations.hpp>

#include <algorithm>
#include <numeric>

namespace Vs {

Document::Document(DocumentType* type, const std::wstring& displayName)
    : m_identifier(makeUuid()),
      m_type(type),
      m_displayName(displayName),
      m_file(std::make_unique<DocumentFile>())
{
    require(type != nullptr, "a document is of a type");
}

Document::~Document()
{
    assertMainThread();
    // Hidden assets are destroyed before the ones that they belong to.
    for (auto* list : {&m_hiddenAssets, &m_assets})
        while (!list->empty()) {
            AssetEvent event(list->back().get(), Timing::Before);
            AssetEventSource::get()->fireAssetClosed(&event);
            list->pop_back();
        }
}

Asset* Document::adopt(std::unique_ptr<Asset> asset)
{
    if (!m_names.empty())
        m_names.insert(asset->name());
    auto& list = asset->isVisible() ? m_assets : m_hiddenAssets;
    list.push_back(std::move(asset));
    return list.back().get();
}

void Document::activeAsset(Asset* asset)
{
    const bool ours = asset && asset->document() == this && asset->isVisible();
    if (!ours || asset == m_activeAsset)
        return;
    m_activeAsset = asset;
    DocumentEvent event(this);
    DocumentEventSource::get()->fireDocumentActiveAssetChanged(&event);
}

void Document::path(const std::wstring& path)
{
    // What a name means must not change with the process's folder.
    const std::wstring absolute = path.empty() ? path : PathInfo::absolute(path).wstring();
    if (absolute != m_path)
        m_file->identity = absolute == m_file->recoveredPath ? m_file->recoveredIdentity : FileIdentity();
    takePath(absolute);
    if (!path.empty())
        displayName(boost::filesystem::path(path).stem().wstring());
}

void Document::takePath(const std::wstring& path)
{
    m_path = path;
    m_comparablePath = path.empty() ? std::string() : Native::comparablePath(path).string();
    m_cloudId = CloudIdentifiers::of(path, m_cloudId);
}

void Document::clearPath()
{
    path({});
}

bool Document::save(Status& status)
{
    Status own;
    // A handler may ask the user for a name. If the user declines, there is nothing to report.
    if (m_path.empty() && IDocMgmtHandler::notifySavingUnnamed({this}) == eDocMgmtStop)
        return false;
    if (m_path.empty())
        own.addError(L"\"" + m_displayName + L"\" has no file name yet. Give it one with Save As.");
    const bool saved = own.isOk() && DocumentSave::save(*this, m_path, own);
    status.merge(own);
    if (!saved) {
        tellFailure(own);
        return false;
    }
    DocumentEvent event(this);
    DocumentEventSource::get()->fireDocumentSaved(&event);
    tellUpdated();
    return true;
}

bool Document::saveAs(const std::wstring& path, Status& status)
{
    Status own;
    if (path.empty())
        own.addError(L"\"" + m_displayName + L"\" needs a file name to be saved under.");
    const std::wstring absolute = path.empty() ? path : PathInfo::absolute(path).wstring();
    const bool saved = own.isOk() && DocumentSave::save(*this, absolute, own);
    status.merge(own);
    if (!saved) {
        tellFailure(own);
        return false;
    }
    tellUpdated();
    return true;
}

void Document::tellFailure(const Status& status)
{
    DocumentFailureEvent event(this, status);
    DocumentEventSource::get()->fireDocumentSaveFailed(&event);
}

void Document::tellUpdated()
{
    DocumentEvent event(this, Timing::Notification);
    DocumentEventSource::get()->fireDocumentUpdated(&event);
}

bool Document::isReadOnly() const
{
    return !m_path.empty() && (HeldFiles::holder(this) || Native::isWriteProtected(Strings::toBytes(m_path)));
}

bool Document::mayBeEdited()
{
    if (m_file->editingAllowed || !isReadOnly())
        return true;
    return m_file->editingAllowed = IDocMgmtHandler::notifyEditingReadOnlyDocuments({this}) != eDocMgmtStop;
}

std::wstring Document::bestPath() const
{
    if (!m_path.empty())
        return m_path;
    return m_importedFrom.empty() ? m_displayName : m_importedFrom;
}

void Document::displayName(const std::wstring& name)
{
    if (name == m_displayName)
        return;
    m_displayName = name;
    tellUpdated();
}

bool Document::isDirty(bool includeReferenced) const
{
    const auto dirty = [&](const auto& asset) { return asset->isDirty(includeReferenced); };
    return std::any_of(m_assets.begin(), m_assets.end(), dirty) ||
           std::any_of(m_hiddenAssets.begin(), m_hiddenAssets.end(), dirty);
}

void Document::addLock(const UniqueString* source)
{
    assertMainThread();
    require(source != nullptr, "a lock has a name");
    ++m_locks[source];
}

void Document::releaseLock(const UniqueString* source)
{
    assertMainThread();
    const auto lock = m_locks.find(source);
    if (lock == m_locks.end())
        return;
    if (--lock->second == 0)
        m_locks.erase(lock);
    if (m_locks.empty() && !m_closing)
        DocumentMgr::get()->close(this);
}

unsigned Document::locks() const
{
    return std::accumulate(m_locks.begin(), m_locks.end(), 0u,
                           [](unsigned sum, const auto& lock) { return sum + lock.second; });
}

std::wstring Document::uniqueAssetName(const std::wstring& name) const
{
    if (m_names.empty())
        for (const auto* list : {&m_assets, &m_hiddenAssets})
            for (const auto& asset : *list)
                m_names.insert(asset->name());
    if (!m_names.contains(name))
        return name;
    unsigned& number = m_freeNumbers.try_emplace(name, 1).first->second;
    while (m_names.contains(name + std::to_wstring(number)))
        ++number;
    return name + std::to_wstring(number);
}

void Document::namesChanged()
{
    m_names.clear();
    m_freeNumbers.clear();
}

Asset* Document::bestAsset(const std::wstring& name) const
{
    std::vector<Asset*> all;
    for (const auto* list : {&m_assets, &m_hiddenAssets})
        for (const auto& asset : *list)
            all.push_back(asset.get());
    for (Asset* asset : all)
        if (asset->name() == name || fromUuid(asset->guid()) == name)
            return asset;
    const auto begins = [&](const Asset* asset) { return !name.empty() && asset->name().starts_with(name); };
    const auto first = std::find_if(all.begin(), all.end(), begins);
    return std::count_if(all.begin(), all.end(), begins) == 1 ? *first : nullptr;
}

} // namespace Vs
