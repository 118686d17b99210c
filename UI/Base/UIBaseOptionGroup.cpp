#include "UI/Base/UIBaseOptionGroup.h"

namespace Vu {

UIBaseOptionGroup* UIBaseOptionGroup::get()
{
    static auto* const group = new UIBaseOptionGroup;
    return group;
}

} // namespace Vu
