#include "Server/DataModel/DocumentMgr.h"

#include "Server/Base/PathInfo.h"
#include "Server/Base/Progress.h"
#include "Server/Base/Require.h"
#include "Server/Base/Strings.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/AssetType.h"
#include "Server/DataModel/DamagedParts.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/DocumentEvents.h"
#include "Server/DataModel/Model/ModelFile.h"
#include "Server/DataModel/Native/DocumentBuild.h"
#include "Server/DataModel/Native/DocumentFile.h"
#include "Server/DataModel/Native/Paths.h"
#include "Server/DataModel/NativeFile.h"
#include "Server/DataModel/Private/ProgressText.h"

#include <boost/algorithm/string/predicate.hpp>
#include <boost/filesystem/operations.hpp>

#include <algorithm>
#include <iterator>

namespace Vs {

namespace fs = boost::filesystem;

namespace {

Document* onlyOne(const std::vector<Document*>& found)
{
    return found.size() == 1 ? found.front() : nullptr;
}

} // namespace

DocumentMgr* DocumentMgr::get()
{
    // Never destroyed: where the process just ends with documents open, those who would be notified of their
    // closing are already gone.
    static auto* const manager = new DocumentMgr;
    return manager;
}

Document* DocumentMgr::document(const std::wstring& path) const
{
    if (path.empty())
        return nullptr;
    const std::string wanted = Native::comparablePath(path).string();
    for (const auto& document : m_documents)
        if (document->m_comparablePath == wanted)
            return document.get();
    if (path.find(L'/') != path.npos)
        return nullptr;
    std::vector<Document*> sameName;
    for (const auto& document : m_documents)
        if (document->isOnDisk() && fs::path(document->path()).filename().wstring() == path)
            sameName.push_back(document.get());
    return onlyOne(sameName);
}

Document* DocumentMgr::bestDocument(const std::wstring& text) const
{
    if (Document* byPath = document(text))
        return byPath;
    if (text.empty())
        return nullptr;
    const fs::path wanted = Native::comparablePath(text);
    std::vector<Document*> named, sourceNamed;
    for (const auto& document : m_documents) {
        const std::wstring& source = document->importedFrom();
        if (!source.empty() && Native::comparablePath(source) == wanted)
            return document.get();
        if (document->displayName() == text)
            named.push_back(document.get());
        if (!source.empty() && fs::path(source).filename().wstring() == text)
            sourceNamed.push_back(document.get());
    }
    Document* byName = onlyOne(named);
    return byName ? byName : onlyOne(sourceNamed);
}

Document* DocumentMgr::add(AssetType* type, const std::wstring& displayName, Status& status)
{
    DocumentType* documentType = this->documentType(type->defaultDocType());
    if (!documentType) {
        status.addError(L"The asset type \"" + type->name() + L"\" belongs to the document type \"" +
                        Strings::widen(type->defaultDocType()) + L"\", which isn't registered.");
        return nullptr;
    }
    m_documents.push_back(std::unique_ptr<Document>(new Document(documentType, displayName)));
    return m_documents.back().get();
}

Document* DocumentMgr::create(AssetType* type, Status& status)
{
    assertMainThread();
    if (!type) {
        status.addError(L"A new document needs an asset type.");
        return nullptr;
    }
    Document* document = add(type, L"Untitled" + std::to_wstring(m_untitled + 1), status);
    if (!document)
        return nullptr;
    ++m_untitled;
    Asset::create(document, type->name(), type);
    DocumentEvent event(document);
    DocumentEventSource::get()->fireDocumentCreated(&event);
    return document;
}

Document* DocumentMgr::createFromModel(const std::wstring& source,
                                       const std::shared_ptr<const ModelFile>& model, Status& status)
{
    assertMainThread();
    require(model != nullptr, "what was read from a file has a model");
    const AssetTypeMgr* types = AssetTypeMgr::get();
    AssetType* type = nullptr;
    for (unsigned i = 0; i < types->assetTypes() && !type; ++i)
        if (!types->assetType(i)->isBuiltIn() && !types->assetType(i)->isHidden())
            type = types->assetType(i);
    if (!type) {
        status.addError(L"\"" + source + L"\" was read, but no add-in is loaded that could hold its model.");
        return nullptr;
    }
    const std::wstring name = fs::path(source).stem().wstring();
    Document* document = add(type, name, status);
    if (!document)
        return nullptr;
    document->importedFrom(source);
    Asset* const asset = Asset::createFromModel(document, name, type, model);
    DamagedParts::note(*asset, model->warnings());
    DocumentEvent event(document);
    DocumentEventSource::get()->fireDocumentOpened(&event);
    return document;
}

Document* DocumentMgr::open(const std::wstring& path, Status& status)
{
    assertMainThread();
    // Absolute, so that a mere name means the file here and not any open one of that name.
    if (Document* open = document(PathInfo::absolute(path).wstring()))
        return open;
    boost::system::error_code error;
    const fs::file_status kind = fs::status(fs::path(path), error);
    if (kind.type() == fs::file_not_found)
        status.addError(L"The file \"" + path + L"\" doesn't exist.");
    else if (fs::is_directory(kind))
        status.addError(L"\"" + path + L"\" is a folder, not a file.");
    else if (error)
        status.addError(L"The file \"" + path + L"\" can't be read: " + Strings::widen(error.message()) +
                        L".");
    else if (!isNative(path))
        status.addError(L"The file \"" + path + L"\" is of no kind that this program can open.");
    else
        return openNative(path, status);
    return nullptr;
}

bool DocumentMgr::isNative(const std::wstring& path) const
{
    return NativeFile::isNative(path) ||
           std::any_of(m_types.begin(), m_types.end(), [&](const DocumentType* type) {
               return boost::algorithm::iends_with(path, type->extension());
           });
}

Document* DocumentMgr::openNative(const std::wstring& path, Status& status)
{
    ProgressScope progress(ProgressText::opening(path));
    auto load = DocumentBuild::read(
        path, [&](double fraction) { return progress.update(fraction); }, status);
    return load ? DocumentBuild::build(std::move(*load), path, status) : nullptr;
}

void DocumentMgr::close(Document* document)
{
    assertMainThread();
    // Of many, the last is removed first.
    const auto place = [&] {
        return std::find_if(m_documents.rbegin(), m_documents.rend(),
                            [&](const auto& candidate) { return candidate.get() == document; });
    };
    if (place() == m_documents.rend() || document->m_closing)
        return;
    document->m_closing = true;
    DocumentEvent before(document, Timing::Before);
    DocumentEventSource::get()->fireDocumentClosed(&before);

    // A site of the first event may have closed or opened other documents.
    const auto still = place();
    const std::unique_ptr<Document> owned = std::move(*still);
    m_documents.erase(std::next(still).base());
    if (m_activeAsset && m_activeAsset->document() == document)
        m_activeAsset = nullptr;
    DocumentEvent after(document, Timing::After);
    DocumentEventSource::get()->fireDocumentClosed(&after);
}

DocumentType* DocumentMgr::documentType(const std::string& identifier) const
{
    const auto found = std::find_if(m_types.begin(), m_types.end(), [&](const DocumentType* type) {
        return type->identifier() == identifier;
    });
    return found == m_types.end() ? nullptr : *found;
}

bool DocumentMgr::registerDocumentType(DocumentType* type)
{
    assertMainThread();
    require(type != nullptr, "a type that is registered is there");
    if (type->identifier().empty() || documentType(type->identifier()))
        return false;
    m_types.push_back(type);
    return true;
}

void DocumentMgr::unregisterDocumentType(DocumentType* type)
{
    assertMainThread();
    std::erase(m_types, type);
}

void DocumentMgr::getUnreferencedAssets(std::vector<Asset*>& assets) const
{
    // A visible asset is referred to by its document's list, a hidden one by its parent or by whoever shows
    // it; what remains are hidden assets whose parent's document has no other use for them.
    for (const auto& document : m_documents)
        for (unsigned i = 0; i < document->hiddenAssets(); ++i) {
            Asset* hidden = document->hiddenAsset(i);
            bool referenced = hidden->parent() != nullptr;
            for (unsigned k = 0; k < document->assets() && !referenced; ++k)
                for (unsigned r = 0; r < document->asset(k)->refdAssets(); ++r)
                    referenced |= document->asset(k)->refdAsset(r) == hidden;
            if (!referenced)
                assets.push_back(hidden);
        }
}

} // namespace Vs
