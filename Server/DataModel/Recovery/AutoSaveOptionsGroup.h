#pragma once

#include "Server/Base/OptionGroup.h"

namespace Vs {

/// The user's options for auto-save.
class AutoSaveOptionsGroup : public Implements<AutoSaveOptionsGroup, OptionGroup>
{
public:
    static AutoSaveOptionsGroup* get();

    /// Whether recovery files are written, and those of runs that ended badly are offered.
    Option<bool> performAutoSave{*this, "performAutoSave", true};

private:
    AutoSaveOptionsGroup() : Implements("AutoSave") {}
};

} // namespace Vs
