#include "Server/DataModel/Selection/Private/ComponentPasteRequest.h"

#include "Server/DataModel/Asset.h"
#include "Server/DataModel/Edit/EditRequest.h"
#include "Server/DataModel/Edit/Private/ComponentLimit.h"
#include "Server/DataModel/Model/ModelData.h"
#include "Server/DataModel/Private/Texts.h"
#include "Server/DataModel/Selection/PathQueries.h"
#include "Server/DataModel/Transaction.h"

#include <memory>
#include <utility>

namespace Vs {

ComponentPasteRequest* ComponentPasteRequest::make(Asset* source, std::vector<ObjectPath> paths, bool cut)
{
    return new ComponentPasteRequest(source, std::move(paths), cut);
}

ComponentPasteRequest::ComponentPasteRequest(Asset* source, std::vector<ObjectPath> paths, bool cut)
    : Implements(DataModel::localized("PasteComponents", "Paste")),
      m_source(source),
      m_paths(std::move(paths)),
      m_cut(cut)
{
}

void ComponentPasteRequest::onExecute(Asset& asset, Status& status)
{
    std::vector<std::string> components;
    for (const ObjectPath& path : m_paths) {
        if (!resolvePath(path, *m_source, status))
            return;
        components.push_back(path.component);
    }
    if (const std::wstring why = whyTooMany(*m_source, components, asset); !why.empty()) {
        status.addError(name() + L": " + why);
        return;
    }
    // What is put elsewhere then has to be in the tree.
    Transaction atTop(&asset, name());
    std::vector<std::string> added = asset.data().history().changeModel([&](ModelKernel& kernel) {
        if (&asset == m_source) {
            std::vector<std::string> copies = kernel.paste(kernel, components);
            if (m_cut)
                kernel.remove(components);
            return copies;
        }
        return m_source->data().source().withKernel(
            [&](ModelKernel& source) { return kernel.paste(source, components); });
    });
    atTop.commit();
    m_pasted.clear();
    if (!m_into.empty() && !nest(asset, added, status))
        return;
    for (const std::string& id : added)
        m_pasted.push_back({.component = id});
}

bool ComponentPasteRequest::nest(Asset& asset, std::vector<std::string>& components, Status& status) const
{
    struct Destroy
    {
        void operator()(Request* request) const { request->destroy(); }
    };
    const std::unique_ptr<EditRequest, Destroy> request(
        EditRequest::make(&asset, name(), NestEdit{components, m_into}));
    const bool nested = request->execute(&asset, status);
    components = request->added();
    return nested;
}

} // namespace Vs
