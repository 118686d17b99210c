#include "Server/DataModel/Native/DocumentContent.h"

#include "Server/Base/SoftwareVersion.h"
#include "Server/Base/Strings.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/DocumentType.h"
#include "Server/DataModel/Model/ModelData.h"
#include "Server/DataModel/Native/DocumentFile.h"
#include "Server/DataModel/Native/Package.h"
#include "Server/Types/Uuid.h"

#include <algorithm>
#include <stdexcept>

namespace Vs::Native {

namespace {

constexpr double kAssetsShare = 0.9; // of the time that writing takes

Manifest::Asset describe(const Asset& asset)
{
    Manifest::Asset entry;
    entry.guid = asset.guid();
    entry.name = asset.name();
    entry.type = asset.assetTypeIdentifier();
    entry.visible = asset.isVisible();
    if (asset.parent())
        entry.parent = asset.parent()->guid();
    for (unsigned i = 0; i < asset.refdAssets(); ++i)
        entry.references.push_back(asset.refdAsset(i)->guid());
    entry.settings = asset.settings();
    return entry;
}

// An unchanged model is copied as bytes; only a changed one is rewritten.
PackageWriter::Entry writeModel(const Asset& asset, Manifest::Asset& entry, PackageWriter& writer,
                                const ModelData::Watch& watch)
{
    ModelData& data = asset.data();
    if (data.isEmpty())
        return {};
    const std::string name = kPartFolder + Strings::narrow(fromUuid(asset.guid())) + ".model";
    PackageWriter::Entry part;
    if (const StoredPart* stored = data.stored()) {
        part = writer.addPart(name, *stored);
        entry.hash = stored->hash;
    } else {
        part = writer.addModel(name, [&](ModelSink& sink) { entry.hash = data.write(sink, watch); });
    }
    entry.part = name;
    entry.place = part.place;
    entry.size = part.size;
    return part;
}

} // namespace

DocumentContent::DocumentContent(const Document& document, const DocumentFile& file)
    : m_document(document), m_file(file)
{
    for (unsigned i = 0; i < document.assets(); ++i)
        m_assets.push_back(document.asset(i));
    for (unsigned i = 0; i < document.hiddenAssets(); ++i)
        m_assets.push_back(document.hiddenAsset(i));
}

void DocumentContent::write(PackageWriter& writer, const Frame& frame, const Watch& watch)
{
    writer.add(kTypeName, kType);
    writeAssets(writer, watch);
    writeExtras(writer, frame.moved);
    if (!frame.record.empty()) {
        writer.add(kRecordName, frame.record);
        Manifest::Extra extra;
        extra.entry = kRecordName;
        extra.untilMoved = true;
        m_manifest.extras.push_back(extra);
    }
    if (!frame.picture.empty())
        writer.add(kThumbnailName, frame.picture);
    writer.add(kManifestName, m_manifest.write());
}

void DocumentContent::writeAssets(PackageWriter& writer, const Watch& watch)
{
    m_manifest.software = SoftwareVersion::currentVersionNumber();
    m_manifest.document = m_document.identifier();
    m_manifest.documentType = m_document.documentType()->identifier();
    if (m_document.activeAsset())
        m_manifest.activeAsset = m_document.activeAsset()->guid();
    for (size_t i = 0; i < m_assets.size(); ++i) {
        const double share = kAssetsShare / double(m_assets.size());
        const auto watchAsset = [&](double fraction) {
            watch((double(i) + fraction) * share, m_assets[i]->name());
        };
        watchAsset(0);
        m_manifest.assets.push_back(describe(*m_assets[i]));
        m_own.push_back(isOwnWork(m_assets[i]->data()));
        m_parts.push_back(writeModel(*m_assets[i], m_manifest.assets.back(), writer, watchAsset));
    }
}

bool DocumentContent::isOwnWork(const ModelData& data) const
{
    const StoredPart* stored = data.stored();
    return !stored || (!data.source().isNative && stored->file != m_file.file);
}

bool DocumentContent::isKept(const Manifest::Extra& extra, bool moved) const
{
    if ((extra.untilMoved && moved) || extra.entry == kRecordName)
        return false;
    const auto concerned = [&](const Asset* asset) {
        return extra.asset.is_nil() || asset->guid() == extra.asset;
    };
    const auto changed = [](const Asset* asset) {
        return !asset->data().isEmpty() && !asset->data().stored();
    };
    return std::any_of(m_assets.begin(), m_assets.end(), concerned) &&
           !(extra.untilChanged && std::any_of(m_assets.begin(), m_assets.end(), [&](const Asset* asset) {
                 return concerned(asset) && changed(asset);
             }));
}

// Other programs' entries stay as they lie, for those that know them.
void DocumentContent::writeExtras(PackageWriter& writer, bool moved)
{
    if (m_file.extras.empty() || !m_file.file)
        return;
    const Package old(m_file.file);
    for (const Manifest::Extra& extra : m_file.extras) {
        const auto isPart = [&](const Manifest::Asset& asset) { return asset.part == extra.entry; };
        if (!isKept(extra, moved) || std::any_of(m_manifest.assets.begin(), m_manifest.assets.end(), isPart))
            continue;
        writer.addPacked(extra.entry, old.packing(extra.entry),
                         [&](const auto& take) { old.readPacked(extra.entry, take); });
        m_manifest.extras.push_back(extra);
    }
}

std::string DocumentContent::oldPicture() const
{
    if (!m_file.file)
        return {};
    try {
        const Package old(m_file.file);
        return old.has(kThumbnailName) ? old.read(kThumbnailName, Package::kMostPicture) : std::string();
    } catch (const std::runtime_error&) {
        return {}; // A picture that can't be read any more isn't worth a failed save.
    }
}

} // namespace Vs::Native
