#pragma once

#include "Server/Base/OptionGroup.h"

namespace Vs {

/// What the user wants to pick.
class SelectionOptionGroup : public Implements<SelectionOptionGroup, OptionGroup>
{
public:
    static SelectionOptionGroup* get()
    {
        static auto* const group = new SelectionOptionGroup;
        return group;
    }

    /// The ids of those categories that are left out while no tool runs.
    Option<std::vector<std::wstring>> disabledCategories{*this, "disabledCategories", {L"Solids"}};

private:
    SelectionOptionGroup() : Implements("Selection") {}
};

} // namespace Vs
