#pragma once

#include "Server/DataModel/Selection/IPasteSource.h"

namespace Vs {

/// Pastes copies of components into an asset, at their place in the source's coordinates. In the same asset
/// they show the same bodies; another asset gets its own bodies. The source must be open when the request is
/// executed; it is an error if a component no longer exists.
class ComponentPasteRequest : public Implements<ComponentPasteRequest, PasteRequest>
{
public:
    static ComponentPasteRequest* make(Asset* source, std::vector<ObjectPath> paths, bool cut);

protected:
    ComponentPasteRequest(Asset* source, std::vector<ObjectPath> paths, bool cut);
    void onExecute(Asset& asset, Status& status) override;

private:
    bool nest(Asset& asset, std::vector<std::string>& components, Status& status) const;

    Asset* m_source;
    std::vector<ObjectPath> m_paths;
    bool m_cut;
};

} // namespace Vs
