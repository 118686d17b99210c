#pragma once

#include "UI/Commands/OwnedList.h"

namespace Vs {
class AssetType;
}

namespace Vu::Commands {

/// The list of the asset types that a user can create. An item's key is the type's identifier.
class AssetTypeList
{
public:
    /// Created and filled at the first call.
    ListControl* control(Info* info, IListControlHandler* handler);
    /// Adds or removes a type; types of the host and hidden ones are never shown. Does nothing before there
    /// is a control.
    void update(Vs::AssetType* type, bool add);

private:
    OwnedList m_list;
};

} // namespace Vu::Commands
