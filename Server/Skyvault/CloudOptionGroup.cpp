#include "Server/Skyvault/CloudOptionGroup.h"

namespace Vs {

CloudOptionGroup* CloudOptionGroup::get()
{
    static CloudOptionGroup group;
    return &group;
}

} // namespace Vs
