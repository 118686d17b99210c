#include "UI/Base/UIBaseOptionGroup.h"

#include "UI/Base/UIInternalOptionGroup.h"

namespace Vu {

UIBaseOptionGroup* UIBaseOptionGroup::get()
{
    static auto* const group = new UIBaseOptionGroup;
    return group;
}

UIInternalOptionGroup* UIInternalOptionGroup::get()
{
    static auto* const group = new UIInternalOptionGroup;
    return group;
}

} // namespace Vu
