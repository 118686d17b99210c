#include "Server/DataModel/Recovery/AutoSaveOptionsGroup.h"

namespace Vs {

AutoSaveOptionsGroup* AutoSaveOptionsGroup::get()
{
    static auto* const group = new AutoSaveOptionsGroup;
    return group;
}

} // namespace Vs
