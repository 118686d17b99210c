#pragma once

#include "Server/Base/OptionGroup.h"

namespace Vs {

/// The user's options for what can be picked.
class SelectionOptionGroup : public Implements<SelectionOptionGroup, OptionGroup>
{
public:
    static SelectionOptionGroup* get()
    {
        static auto* const group = new SelectionOptionGroup;
        return group;
    }

    /// The ids of the categories that are excluded while no tool runs.
    Option<std::vector<std::wstring>> disabledCategories{*this, "disabledCategories", {L"Solids"}};

private:
    SelectionOptionGroup() : Implements("Selection") {}
};

} // namespace Vs
