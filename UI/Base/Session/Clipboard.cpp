#include "UI/Base/Session/Clipboard.h"

#include "Server/Base/Require.h"

#include <utility>

namespace Vu {

Clipboard::Clipboard()
{
    Vs::AssetEventSource::get()->subscribe(this);
}

Clipboard::~Clipboard()
{
    Vs::AssetEventSource::get()->unsubscribe(this);
}

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
