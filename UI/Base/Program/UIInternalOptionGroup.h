#pragma once

#include "Server/Base/OptionGroup.h"

namespace Vu {

/// What tools remember from one run to the next and no dialog shows. A tool reads and writes its options by
/// their names.
class UIInternalOptionGroup : public Vs::Implements<UIInternalOptionGroup, Vs::OptionGroup>
{
public:
    static UIInternalOptionGroup* get()
    {
        static auto* const group = new UIInternalOptionGroup;
        return group;
    }

private:
    UIInternalOptionGroup() : Implements("UIInternal") {}
};

} // namespace Vu
