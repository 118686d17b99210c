#include "Server/DataModel/Native/DocumentBuild.h"

#include "Server/Base/PathInfo.h"
#include "Server/Base/Strings.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/AssetEvents.h"
#include "Server/DataModel/AssetType.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/DocumentEvents.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Server/DataModel/FileChecks.h"
#include "Server/DataModel/Model/ModelData.h"
#include "Server/DataModel/Native/DocumentFile.h"
#include "Server/DataModel/Native/Package.h"
#include "Server/DataModel/Private/Texts.h"
#include "Server/Types/Uuid.h"

#include <boost/algorithm/string/join.hpp>
#include <boost/filesystem/operations.hpp>

#include <exception>
#include <set>

namespace Vs {

namespace {

using boost::uuids::uuid;

// A copy of a file that is open holds the same identifiers. What is open already keeps them.
std::set<uuid> takenIdentifiers()
{
    std::set<uuid> taken;
    const DocumentMgr* manager = DocumentMgr::get();
    for (unsigned i = 0; i < manager->documents(); ++i) {
        const Document* document = manager->document(i);
        taken.insert(document->identifier());
        for (unsigned k = 0; k < document->assets(); ++k)
            taken.insert(document->asset(k)->guid());
        for (unsigned k = 0; k < document->hiddenAssets(); ++k)
            taken.insert(document->hiddenAsset(k)->guid());
    }
    return taken;
}

// What opening left unread. Entries that a crafted file lists but doesn't have don't count as damage.
std::vector<Native::FileCheck::Part> partsToCheck(const Native::NativeLoad& load)
{
    std::vector<Native::FileCheck::Part> parts;
    for (size_t i = 0; i < load.models.size(); ++i)
        if (load.models[i].model)
            parts.push_back({load.manifest.assets[i].part,
                             DataModel::localizedFormat("DamagedModel", "the exact data of \"%1%\"",
                                                        load.manifest.assets[i].name),
                             load.models[i].model});
    if (load.hasPicture)
        parts.push_back(
            {Native::kThumbnailName, DataModel::localized("DamagedPicture", "the preview picture"), nullptr});
    for (const Native::Manifest::Extra& extra : load.manifest.extras)
        parts.push_back({extra.entry, L"\"" + Strings::widen(extra.entry) + L"\"", nullptr});
    return parts;
}

/// What the manifest has that no add-in knows, for a message; empty for nothing.
std::wstring unknownTypeIn(const Native::Manifest& manifest)
{
    if (!DocumentMgr::get()->documentType(manifest.documentType))
        return L"documents of the type \"" + Strings::widen(manifest.documentType) + L"\"";
    for (const Native::Manifest::Asset& asset : manifest.assets)
        if (!AssetTypeMgr::get()->assetType(asset.type))
            return L"\"" + asset.name + L"\", which is of the type \"" + Strings::widen(asset.type) + L"\"";
    return {};
}

void tellOfDamage(Document* document, const std::vector<std::wstring>& damaged)
{
    Status status;
    status.addError(
        DataModel::localizedFormat("DamagedFile",
                                   "\"%1%\" has been damaged on the disk since it was saved. No longer "
                                   "readable: %2%. The rest is intact; look for an older copy of the file.",
                                   document->path(), boost::algorithm::join(damaged, L", ")));
    DocumentFailureEvent event(document, status);
    FileDamageEventSource::get()->fireFileDamaged(&event);
}

} // namespace

std::optional<Native::NativeLoad> DocumentBuild::read(const std::wstring& path,
                                                      const Native::NativeLoad::Watch& watch, Status& status)
{
    try {
        return Native::NativeLoad::read(Strings::toBytes(path), watch);
    } catch (const Native::Cancelled&) {
        status.addError(L"Opening \"" + path + L"\" was cancelled.");
    } catch (const std::exception& error) {
        status.addError(L"\"" + path + L"\" can't be opened: " + Strings::widen(error.what()) + L".");
    }
    return std::nullopt;
}

Document* DocumentBuild::build(Native::NativeLoad load, const std::wstring& path, Status& status)
{
    const Native::Manifest& manifest = load.manifest;
    if (const std::wstring unknown = unknownTypeIn(manifest); !unknown.empty()) {
        status.addError(L"\"" + path + L"\" can't be opened: no add-in is loaded that knows " + unknown +
                        L".");
        return nullptr;
    }
    const std::set<uuid> taken = takenIdentifiers();
    const Identifiers own = [&](const uuid& guid) { return taken.contains(guid) ? makeUuid() : guid; };
    const std::wstring name = boost::filesystem::path(path).stem().wstring();
    std::unique_ptr<Document> made(
        new Document(DocumentMgr::get()->documentType(manifest.documentType), name));
    made->m_identifier = own(manifest.document);
    made->takePath(PathInfo::absolute(path).wstring());
    made->m_savedVersion = manifest.software;
    made->m_file->identity = load.file->identity();
    made->m_file->migrated = manifest.version < Native::Manifest::kVersion;
    made->m_file->file = load.file;

    const std::vector<Native::FileCheck::Part> unread = partsToCheck(load);
    Assets assets = addAssets(*made, load, own);
    made->m_activeAsset = assets[manifest.activeAsset];
    for (Native::Manifest::Extra extra : manifest.extras) {
        if (!extra.asset.is_nil())
            extra.asset = assets[extra.asset]->guid();
        made->m_file->extras.push_back(std::move(extra));
    }

    Document* document = made.get();
    DocumentMgr::get()->m_documents.push_back(std::move(made));
    for (const Native::Manifest::Asset& entry : manifest.assets) {
        assets[entry.guid]->m_fullyInitialized = true;
        AssetEvent event(assets[entry.guid]);
        AssetEventSource::get()->fireAssetCreated(&event);
    }
    DocumentEvent event(document);
    DocumentEventSource::get()->fireDocumentOpened(&event);
    document->m_file->check = std::make_unique<Native::FileCheck>(
        load.file, unread, [document](const auto& damaged) { tellOfDamage(document, damaged); });
    return document;
}

DocumentBuild::Assets DocumentBuild::addAssets(Document& document, Native::NativeLoad& load,
                                               const Identifiers& own)
{
    const std::vector<Native::Manifest::Asset>& entries = load.manifest.assets;
    Assets assets;
    for (size_t i = 0; i < entries.size(); ++i) {
        const Native::Manifest::Asset& entry = entries[i];
        AssetType* type = AssetTypeMgr::get()->assetType(entry.type);
        Asset* parent = entry.visible ? nullptr : assets[entry.parent];
        Asset* asset = document.adopt(
            std::unique_ptr<Asset>(new Asset(&document, entry.name, type, parent, entry.visible)));
        asset->m_guid = own(entry.guid);
        asset->m_data->settings() = entry.settings;
        if (load.models[i].model) {
            asset->m_data->load(std::move(load.models[i].model));
            asset->m_data->source().isNative = true;
        }
        asset->m_data->stored(std::move(load.models[i].part));
        assets[entry.guid] = asset;
    }
    for (const Native::Manifest::Asset& entry : entries)
        for (const uuid& reference : entry.references)
            assets[entry.guid]->m_referenced.push_back(assets[reference]);
    return assets;
}

} // namespace Vs
