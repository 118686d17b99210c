#include "UI/Design/NativeComponents.h"

#include "Server/Component/Component.h"
#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Document.h"
#include "Server/DataModel/DocumentMgr.h"
#include "Server/DataModel/DocumentType.h"
#include "Server/DataModel/Selection/IPasteSource.h"
#include "Server/DataModel/Selection/Selection.h"
#include "UI/Design/Localized.h"

#include <boost/algorithm/string/predicate.hpp>

#include <memory>
#include <vector>

namespace Vu::Design {
namespace {

using Vs::DataModel::IPasteSource;

struct Destroy
{
    void operator()(Vs::PasteRequest* request) const { request->destroy(); }
};
struct Close
{
    void operator()(Vs::Document* document) const { Vs::DocumentMgr::get()->close(document); }
};

/// One request pastes all of them: they are siblings.
std::unique_ptr<Vs::PasteRequest, Destroy> pasteOf(Vs::Asset& asset)
{
    std::vector<Vs::ObjectPath> paths, handled;
    for (const auto& child : asset.components()->children)
        paths.push_back(Vs::ObjectPath{child->id});
    if (paths.empty())
        return nullptr;
    const Vs::LogicalSelection first(&asset, paths.front(), nullptr);
    const Vs::StrongRef<Vs::SharedObject> leaf = first.leaf(asset);
    auto* source = Vs::cast<IPasteSource>(leaf.get());
    return std::unique_ptr<Vs::PasteRequest, Destroy>(
        source ? source->providePasteRequest(paths, false, handled) : nullptr);
}

} // namespace

bool isNativeFile(const std::wstring& path)
{
    const Vs::DocumentMgr* documents = Vs::DocumentMgr::get();
    for (unsigned i = 0; i < documents->documentTypes(); ++i)
        if (boost::iends_with(path, documents->documentType(i)->extension()))
            return true;
    return false;
}

bool insertNativeFile(const std::wstring& path, const std::string& into,
                      const std::function<bool(Vs::Request*)>& execute, Vs::Status& status)
{
    Vs::DocumentMgr* documents = Vs::DocumentMgr::get();
    Vs::Document* document = documents->document(path);
    std::unique_ptr<Vs::Document, Close> opened;
    if (!document) {
        document = documents->open(path, status);
        opened.reset(document);
    }
    if (!document)
        return false;
    const auto request = document->activeAsset() ? pasteOf(*document->activeAsset()) : nullptr;
    if (!request) {
        status.addError(localizedFormat("NothingToInsert", "%1%: there is nothing in it to insert.", path));
        return false;
    }
    request->into(into);
    return execute(request.get());
}

} // namespace Vu::Design
