#include "Server/Itemhub/ItemhubOptionGroup.h"

namespace Vs {

ItemhubOptionGroup* ItemhubOptionGroup::get()
{
    static ItemhubOptionGroup group;
    return &group;
}

} // namespace Vs
