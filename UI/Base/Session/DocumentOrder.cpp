#include "UI/Base/Session/DocumentOrder.h"

#include "Server/Base/Require.h"
#include "UI/Base/Session/SessionMgr.h"

#include <algorithm>
#include <unordered_map>

namespace Vu {

DocumentOrder* DocumentOrder::get()
{
    static auto* const order = new DocumentOrder;
    return order;
}

DocumentOrder::DocumentOrder()
{
    Vs::DocumentEventSource::get()->subscribe(this);
}

void DocumentOrder::documentClosed(Vs::DocumentEvent* event)
{
    // Another one may come to have its address.
    if (event->timing() == Vs::Timing::After)
        std::erase(m_moved, event->document());
}

void DocumentOrder::sort(std::vector<Vs::Document*>& documents) const
{
    if (m_moved.empty())
        return;
    std::unordered_map<const Vs::Document*, size_t> places;
    for (size_t i = 0; i < m_moved.size(); ++i)
        places[m_moved[i]] = i;
    const auto place = [&](const Vs::Document* document) {
        const auto found = places.find(document);
        return found == places.end() ? m_moved.size() : found->second;
    };
    std::ranges::stable_sort(documents, {}, place);
}

void DocumentOrder::move(Vs::Document* document, const Vs::Document* before)
{
    Vs::assertMainThread();
    const std::vector<Vs::Document*> open = SessionMgr::get()->openDocuments();
    m_moved.assign(open.begin(), open.end());
    if (document == before || std::erase(m_moved, document) == 0)
        return;
    m_moved.insert(std::ranges::find(m_moved, before), document);
    forEach([](DocumentOrderSite* site) { site->documentOrderChanged(); });
}

} // namespace Vu
