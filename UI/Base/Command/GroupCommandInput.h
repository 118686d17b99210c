#pragma once

#include "UI/Base/Command/CommandInput.h"

namespace Vu {

/// A heading of a panel with the inputs under it, which can be folded away; the value says whether it is
/// open. An input belongs to the group that is open when it is made. Hiding or disabling the group applies to
/// its inputs as well; folding changes no input.
class GroupCommandInput : public Vs::Implements<GroupCommandInput, BoolValueCommandInput>
{
public:
    /// Begins a group; groups may be nested.
    static GroupCommandInput* make(CommandInputSet* set, int number, Info* info, bool opened = true);
    /// The end of the group, and of those inside it that are still open.
    void end();

private:
    using Implements::Implements;
};

} // namespace Vu
