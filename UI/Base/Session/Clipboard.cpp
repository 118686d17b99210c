#include "UI/Base/Session/Clipboard.h"

#include "Server/Base/Require.h"

#include <utility>

namespace Vu {

Clipboard::Clipboard()
{
    m_subscriptions.add(Vs::AssetEventSource::get(), this);
}

Clipboard::~Clipboard() = default;

void Clipboard::add(Vs::StrongRef<Vs::LogicalSelection> object, bool cut)
{
    Vs::require(object.get() != nullptr, "what is copied is there");
    m_entries.push_back({std::move(object), cut});
}

void Clipboard::assetClosed(Vs::AssetEvent* event)
{
    std::erase_if(m_entries, [&](const Entry& entry) { return entry.object->asset() == event->asset(); });
}

} // namespace Vu
