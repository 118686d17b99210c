#pragma once

#include "Server/DataModel/AssetEvents.h"
#include "Server/DataModel/Selection/Selection.h"

#include <vector>

namespace Vu {

/// The objects that the user has copied or cut and may paste. It holds no copies: an object is pasted as it
/// is at that time, and closing an asset removes its objects. Main thread only.
class Clipboard : public Vs::Implements<Clipboard>, private Vs::AssetEventSite
{
public:
    struct Entry
    {
        Vs::StrongRef<Vs::LogicalSelection> object; ///< Its asset is open.
        bool cut;                                   ///< Is removed from its place when it is pasted.
    };

    Clipboard();
    ~Clipboard() override;

    /// In the order in which they were added.
    const std::vector<Entry>& entries() const { return m_entries; }
    [[nodiscard]] bool empty() const { return m_entries.empty(); }
    void clear() { m_entries.clear(); }
    void add(Vs::StrongRef<Vs::LogicalSelection> object, bool cut);

private:
    void assetClosed(Vs::AssetEvent* event) override;

    std::vector<Entry> m_entries;
    Vs::Subscriptions m_subscriptions;
};

} // namespace Vu
